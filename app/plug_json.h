#pragma once

#include "host/core/outcome.h"
#include "host/graph/scene.h"

#include <string>
#include <string_view>

namespace vesk::app {

/// Pulls a plug and writes its value as one line of JSON: numbers (angles, distances and times in UI units),
/// texts, arrays (vectors and points as lists), null for no data; of geometry its counts.
Outcome plugJson(graph::Scene& scene, std::string_view plugName, std::string& line);

/// A frame number as JSON.
std::string frameText(double frame);

} // namespace vesk::app
