#pragma once

#include <string_view>

namespace vesk::mel {

/// Runs a text in an interpreter of its own under tight limits, so that any text whatever comes to an end
/// soon. Aborts when the interpreter is not in order afterwards.
void runAnyText(std::string_view text);

} // namespace vesk::mel
