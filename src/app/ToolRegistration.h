#pragma once

namespace ostrelle {

class Services;
class ToolRegistry;

/// What each tool is to the notch: its view, badge and count, and what it does with files. The services outlive the
/// registry.
void registerTools(ToolRegistry &registry, Services &services);

} // namespace ostrelle
