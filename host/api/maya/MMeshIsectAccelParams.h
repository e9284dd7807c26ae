#pragma once

/// How a mesh prepares for many rays. Here each mesh keeps one structure for all queries, made when first
/// asked for, so that these parameters choose nothing: answers never depend on them.
class MMeshIsectAccelParams {};
