#pragma once

#include <QObject>

namespace ostrelle {

/// Base of every test class: a warning that was not announced with QTest::ignoreMessage() fails the test function. A
/// class with an init() of its own calls this one.
class TestBase : public QObject
{
    Q_OBJECT
protected Q_SLOTS:
    void init();
};

} // namespace ostrelle
