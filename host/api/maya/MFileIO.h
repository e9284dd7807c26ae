#pragma once

/// Scene files and the session.
class MFileIO {
  public:
    /// Whether a scene is being opened or brought in; wires and values are then still on their way.
    static bool isReadingFile();
};
