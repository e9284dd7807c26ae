#include "host/core/log.h"

namespace vesk {

void Log::add(LogLevel level, std::string_view text) {
    LogEntry entry{level, std::string(text)};
    if (level == LogLevel::Error) ++errors_;
    if (level == LogLevel::Warning) ++warnings_;
    if (sink_) sink_(entry);
    if (keep_) entries_.push_back(std::move(entry));
}

std::string Log::decorated(const LogEntry& entry) {
    switch (entry.level) {
    case LogLevel::Print: return entry.text;
    case LogLevel::Info: return "// " + entry.text + " //";
    case LogLevel::Warning: return "// Warning: " + entry.text + " //";
    case LogLevel::Error: return "// Error: " + entry.text + " //";
    }
    return entry.text;
}

Log& log() {
    static Log instance;
    return instance;
}

} // namespace vesk
