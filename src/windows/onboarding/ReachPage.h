#pragma once

#include "notch/controls/ControlContext.h"

#include <QWidget>

namespace ostrelle {

class TaskScheduler;

/// Where the notch lives, and the ways to open it.
class ReachPage : public QWidget
{
    Q_OBJECT
public:
    ReachPage(const ControlContext &context, TaskScheduler &scheduler, QWidget *parent);
};

} // namespace ostrelle
