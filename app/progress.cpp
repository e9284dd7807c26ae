#include "app/progress.h"

#include <cstdio>
#include <string>

namespace vesk::app {

Progress::Progress(ProgressDialect dialect, std::size_t total) : dialect_(dialect), total_(total) {}

Progress::~Progress() {
    if (barIsOpen_) std::fputc('\n', stderr);
}

void Progress::done(std::size_t count) {
    if (dialect_ == ProgressDialect::None || total_ == 0) return;
    const auto now = std::chrono::steady_clock::now();
    const bool isLast = count >= total_;
    const bool isTooSoon = dialect_ != ProgressDialect::Bar && now - last_ < std::chrono::seconds(1);
    if (!isLast && isTooSoon) return;
    last_ = now;
    say(static_cast<double>(count) / static_cast<double>(total_), count);
    std::fflush(stderr);
}

void Progress::say(double share, std::size_t count) {
    const double percent = 100 * share;
    switch (dialect_) {
    case ProgressDialect::Bar: {
        constexpr int kWidth = 40;
        const int filled = static_cast<int>(share * kWidth);
        std::fprintf(stderr, "\r[%s%s] %3.0f%% (%zu of %zu)", std::string(filled, '#').c_str(),
                     std::string(kWidth - filled, ' ').c_str(), percent, count, total_);
        barIsOpen_ = true;
        return;
    }
    case ProgressDialect::Percent:
        std::fprintf(stderr, "progress: %.0f%% (%zu of %zu)\n", percent, count, total_);
        return;
    case ProgressDialect::Alf: std::fprintf(stderr, "ALF_PROGRESS %.0f%%\n", percent); return;
    case ProgressDialect::OpenJobDescription:
        std::fprintf(stderr, "openjd_progress: %.1f\n", percent);
        return;
    case ProgressDialect::Json:
        std::fprintf(stderr, "{\"progress\": %.4f, \"done\": %zu, \"total\": %zu}\n", share, count, total_);
        return;
    case ProgressDialect::None: return;
    }
}

} // namespace vesk::app
