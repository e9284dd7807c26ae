#pragma once

#include <string>

namespace vesk::app {

/// While alive, sends the log where it belongs: `print` to standard output, all other talk to standard error,
/// each as the host's script window shows it, or as one JSON object a line.
class Talk {
  public:
    explicit Talk(bool json);
    ~Talk();
    Talk(const Talk&) = delete;
    Talk& operator=(const Talk&) = delete;
};

/// A text as a JSON string; bytes that are not UTF-8 are replaced.
std::string quotedJson(const std::string& text);

} // namespace vesk::app
