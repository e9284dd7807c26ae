#include "host/commands/attribute_commands.h"

namespace vesk::commands {

void addAttributeCommands(mel::CommandTable& table, CommandContext& context) {
    for (auto rows : {setAttrCommands(), getAttrCommands(), addAttrCommands(), attributeNameCommands(),
                      attributeQueryCommands(), listAttrCommands(), connectionCommands(),
                      connectionQueryCommands(), multiCommands(), nodeQueryCommands()}) {
        addCommands(table, context, rows);
    }
}

} // namespace vesk::commands
