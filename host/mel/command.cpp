#include "host/mel/command.h"

#include <algorithm>

namespace vesk::mel {

void CommandTable::add(std::string name, Command command) {
    commands_.insert_or_assign(std::move(name), std::make_shared<const Command>(std::move(command)));
    ++version_;
}

bool CommandTable::remove(std::string_view name) {
    const auto found = commands_.find(name);
    if (found == commands_.end()) return false;
    commands_.erase(found);
    ++version_;
    return true;
}

const Command* CommandTable::find(std::string_view name) const {
    const auto found = commands_.find(name);
    return found == commands_.end() ? nullptr : found->second.get();
}

std::shared_ptr<const Command> CommandTable::share(std::string_view name) const {
    const auto found = commands_.find(name);
    return found == commands_.end() ? nullptr : found->second;
}

std::vector<std::string> CommandTable::names() const {
    std::vector<std::string> names;
    names.reserve(commands_.size());
    for (const auto& [name, command] : commands_)
        names.push_back(name);
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace vesk::mel
