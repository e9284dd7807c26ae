#pragma once

#include "host/commands/command_spec.h"
#include "host/core/outcome.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace vesk::scene {

/// Lines that may fail before a file counts as no scene at all.
inline constexpr int kMostLineErrors = 1000;

/// Runs the text of a Maya ASCII file into the scene, statement by statement. The format is the language
/// restricted to commands: those are called directly, anything else goes through the interpreter. A statement
/// that fails is an error on the log with file and line; reading goes on.
///
/// The outcome fails when nothing of it could be read (it is no text, or no scene), when it ends in the
/// middle of a statement, or when statements failed.
Outcome readAscii(commands::CommandContext& context, std::string_view text, const std::string& fileName);

} // namespace vesk::scene
