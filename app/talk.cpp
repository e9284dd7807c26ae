#include "app/talk.h"

#include "host/core/log.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace vesk::app {

std::string quotedJson(const std::string& text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

namespace {

const char* levelName(LogLevel level) {
    switch (level) {
    case LogLevel::Print: return "print";
    case LogLevel::Info: return "info";
    case LogLevel::Warning: return "warning";
    case LogLevel::Error: return "error";
    }
    return "info";
}

std::string asJson(const LogEntry& entry) {
    std::string line =
        "{\"level\": \"" + std::string(levelName(entry.level)) + "\", \"text\": " + quotedJson(entry.text);
    if (!entry.detail.empty()) line += ", \"detail\": " + quotedJson(entry.detail);
    return line + "}";
}

} // namespace

Talk::Talk(bool json) {
    log().setSink([json](const LogEntry& entry) {
        if (entry.level == LogLevel::Print) {
            std::fwrite(entry.text.data(), 1, entry.text.size(), stdout);
            std::fflush(stdout);
            return;
        }
        std::fprintf(stderr, "%s\n", json ? asJson(entry).c_str() : Log::decorated(entry).c_str());
    });
}

Talk::~Talk() { log().setSink(nullptr); }

} // namespace vesk::app
