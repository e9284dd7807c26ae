#pragma once
// What the API needs of the running session. The session implements it; tests bring their own.

#include "host/graph/scene.h"
#include "host/mel/interpreter.h"

#include <maya/MGlobal.h>

#include <string>

namespace vesk::api {

/// The session as the API's classes see it.
class Session {
  public:
    virtual ~Session() = default;

    virtual graph::Scene& scene() = 0;
    /// `echo` shows the command and its result as a command line would. An error is on the log already.
    virtual mel::Result runMel(const std::string& text, bool echo) = 0;
    /// Runs the text after what runs now has ended.
    virtual void deferMel(const std::string& text) = 0;
    virtual mel::Result sourceFile(const std::string& path) = 0;

    struct PythonResult {
        bool ok = false;
        std::string text; ///< of an expression: its value as text; empty for statements
    };
    /// In `__main__`. An error is on the log already.
    virtual PythonResult runPython(const std::string& text, bool echo) = 0;
    virtual MGlobal::MMayaState state() const = 0;

    graph::Selection hilite; ///< what is highlighted for the selection of components
};

/// The running session; null when there is none.
Session* session();
/// There is one session in a process; null ends it for the API.
void setSession(Session* running);

} // namespace vesk::api
