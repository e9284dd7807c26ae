#include <maya/MCommandMessage.h>

#include "host/api/impl/access.h"
#include "host/core/log.h"

#include <maya/MString.h>

namespace {

MCommandMessage::MessageType typeOf(vesk::LogLevel level) {
    switch (level) {
    case vesk::LogLevel::Print: return MCommandMessage::kDisplay;
    case vesk::LogLevel::Info: return MCommandMessage::kInfo;
    case vesk::LogLevel::Warning: return MCommandMessage::kWarning;
    case vesk::LogLevel::Error: return MCommandMessage::kError;
    }
    return MCommandMessage::kDisplay;
}

} // namespace

MCallbackId MCommandMessage::addCommandOutputCallback(OutputFunction function, void* clientData,
                                                      MStatus* status) {
    if (!function) return vesk::api::answer(status, MCallbackId{0}, MStatus::kInvalidParameter);
    const auto pass = [function, clientData](const vesk::LogEntry& entry) {
        const std::string text = entry.detail.empty() ? entry.text : entry.text + "\n" + entry.detail;
        function(vesk::toMString(text), typeOf(entry.level), clientData);
    };
    return vesk::api::answer(status, MCallbackId{vesk::log().addListener(pass)});
}

MStatus MMessage::removeCallback(MCallbackId id) {
    return vesk::log().removeListener(static_cast<int>(id)) ? MStatus::kSuccess : MStatus::kFailure;
}
