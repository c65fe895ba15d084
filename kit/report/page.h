// The parts of report.html that are the same in every report: style sheet, body and script.
#pragma once

#include <string_view>

namespace lintara::kit {

std::string_view ReportStyle();
std::string_view ReportBody();
std::string_view ReportScript();

}  // namespace lintara::kit
