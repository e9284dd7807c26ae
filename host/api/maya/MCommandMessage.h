#pragma once

#include <maya/MMessage.h>

class MString;

/// Callbacks on what scripts and commands say.
class MCommandMessage : public MMessage {
  public:
    enum MessageType { kHistory = 0, kDisplay, kInfo, kWarning, kError, kResult };

    using OutputFunction = void (*)(const MString& message, MessageType type, void* clientData);

    /// Called with each message of the session, without its decoration. Below the first line of an error
    /// stand the place in the text and the procedures that were running.
    static MCallbackId addCommandOutputCallback(OutputFunction function, void* clientData = nullptr,
                                                MStatus* status = nullptr);
};
