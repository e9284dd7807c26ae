#include "host/core/log.h"

#include <algorithm>

namespace vesk {

void Log::add(LogLevel level, std::string_view text, std::string_view detail) {
    LogEntry entry{level, std::string(text), std::string(detail)};
    if (level == LogLevel::Error) ++errors_;
    if (level == LogLevel::Warning) ++warnings_;
    if (sink_) sink_(entry);
    for (auto next = listeners_.begin(); next != listeners_.end();) {
        const auto [id, listener] = *next;
        listener(entry);
        next = listeners_.upper_bound(id);
    }
    if (keep_) entries_.push_back(std::move(entry));
}

int Log::addListener(Sink listener) {
    listeners_.emplace(++lastListener_, std::move(listener));
    return lastListener_;
}

std::string Log::decorated(const LogEntry& entry) {
    switch (entry.level) {
    case LogLevel::Print: return entry.text;
    case LogLevel::Info: return "// " + entry.text + " //";
    case LogLevel::Warning: return "// Warning: " + entry.text + " //";
    case LogLevel::Error: break;
    }
    std::string lines = "// Error: " + entry.text + " //";
    std::string_view rest = entry.detail;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        lines += "\n//   ";
        lines += rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return lines;
}

Log& log() {
    static Log instance;
    return instance;
}

} // namespace vesk
