#pragma once

#include "app/options.h"

#include <chrono>
#include <cstddef>

namespace vesk::app {

/// Tells on standard error how far a run is: a bar on a terminal, otherwise flushed lines, at most one a
/// second (the last one always).
class Progress {
  public:
    Progress(ProgressDialect dialect, std::size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void done(std::size_t count);

  private:
    void say(double share, std::size_t count);

    ProgressDialect dialect_;
    std::size_t total_;
    std::chrono::steady_clock::time_point last_;
    bool barIsOpen_ = false;
};

} // namespace vesk::app
