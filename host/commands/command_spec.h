#pragma once
// The frame of all host commands: a command is a row that declares its flags once, and a function. One parser
// turns the words of a call into `Args` by that row; help comes out of the same rows.

#include "host/graph/scene.h"
#include "host/mel/command.h"
#include "host/mel/interpreter.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::commands {

struct CommandSpec;

/// A compound that `addAttr` has begun, until its last child arrives.
struct PendingCompound {
    struct Place {
        graph::AttrRef compound;
        std::size_t childCount;
    };
    Ref<graph::Node> node;
    graph::AttrRef top;
    std::vector<Place> places; ///< the compounds in it, `top` first
};

/// What commands work on. One for a session; outlives the table that its commands are in.
struct CommandContext {
    graph::Scene& scene;
    mel::Machine& mel;
    /// The node that names such as `.tx` mean: the last one made or selected by the file being read. Null
    /// when no file is read.
    Ref<graph::Node> currentNode;

    std::vector<const CommandSpec*> rows; ///< all registered commands, in order of registration
    std::vector<PendingCompound> pendingCompounds;
};

/// What a flag's argument may be. A number is taken where text is wanted; text that is a number as a whole is
/// taken where a number is wanted.
enum class ArgKind : std::uint8_t { Bool, Int, Float, Text };

using Modes = unsigned;
inline constexpr Modes kCreate = 1, kQuery = 2, kEdit = 4, kAllModes = kCreate | kQuery | kEdit;

struct FlagSpec {
    std::string_view longName;  ///< with its dash: `-worldSpace`
    std::string_view shortName; ///< `-ws`
    /// What follows the flag in create and edit mode. Nothing: the flag stands alone and means "on".
    std::vector<ArgKind> args = {};
    Modes modes = kAllModes;
    bool multiUse = false;  ///< every use counts; of any other flag the last one does
    bool queryArgs = false; ///< takes its arguments in query mode too
};

enum class Mode : std::uint8_t { Create, Query, Edit };

/// The words of one call, taken apart. Holds pointers into the call: valid as long as that.
class Args {
  public:
    Mode mode = Mode::Create;
    bool isQuery() const { return mode == Mode::Query; }
    bool isEdit() const { return mode == Mode::Edit; }

    // Flags, by their long name without the dash. To ask for one that the row does not declare is a mistake
    // of the command and throws.

    bool has(std::string_view flag) const { return !uses(flag).empty(); }
    /// Given, and without an argument or with a true one.
    bool isOn(std::string_view flag) const;
    /// Argument number `index` of the last use; the fallback when it was not given.
    bool boolean(std::string_view flag, bool fallback) const;
    int integer(std::string_view flag, int fallback = 0, std::size_t index = 0) const;
    double number(std::string_view flag, double fallback = 0, std::size_t index = 0) const;
    std::string text(std::string_view flag, std::string_view fallback = {}, std::size_t index = 0) const;
    /// The first argument of every use.
    std::vector<std::string> texts(std::string_view flag) const;
    /// The arguments of every use, in order. They were checked against the row.
    std::vector<std::span<const mel::Value>> uses(std::string_view flag) const;
    /// Whether any flag but `-query` and `-edit` was given.
    bool hasFlags() const { return !uses_.empty(); }

    /// What is neither flag nor argument, in order.
    const std::vector<const mel::Value*>& words() const { return words_; }
    std::size_t wordCount() const { return words_.size(); }
    /// As text; throws when there are fewer.
    std::string word(std::size_t index) const;
    /// All of them as text.
    std::vector<std::string> wordTexts() const;

  private:
    friend Args parse(const CommandSpec&, std::span<const mel::Value>);
    struct Use {
        const FlagSpec* flag;
        std::span<const mel::Value> values;
    };
    const FlagSpec& declared(std::string_view flag) const;
    const mel::Value* argument(std::string_view flag, std::size_t index) const;

    const CommandSpec* spec_ = nullptr;
    std::vector<Use> uses_;
    std::vector<const mel::Value*> words_;
};

using Run = mel::Value (*)(CommandContext&, const Args&);

struct CommandSpec {
    std::string_view name;
    std::string_view operands; ///< what stands beside the flags, for the help line: `plug value...`
    std::vector<FlagSpec> flags;
    Run run = nullptr;
    Modes modes = kCreate;
    /// After the first operand, a word that begins with a dash and is no flag of this command is an operand.
    bool dashedOperands = false;
};

/// Throws `mel::Error` with the host's words: `Invalid flag '-x'.`, a missing argument, one of the wrong
/// type.
Args parse(const CommandSpec& spec, std::span<const mel::Value> words);

/// The flag of that name, long or short, with its dash; null when the row has none.
const FlagSpec* findFlag(const CommandSpec& spec, std::string_view name);

/// Whether a word is a flag by its looks: a dash and a letter.
bool looksLikeFlag(std::string_view word);

/// `on true yes 1` and their opposites, and any number; nothing for other words.
std::optional<bool> asBool(const mel::Value& word);

/// Makes commands of the rows. They and the context must outlive the table's use.
void addCommands(mel::CommandTable& table, CommandContext& context, std::span<const CommandSpec> specs);

/// The row of a command; null when there is none.
const CommandSpec* findCommand(const CommandContext& context, std::string_view name);

/// Synopsis and flags of a command, as `help` shows them.
std::string helpText(const CommandSpec& spec);

/// Throws the failure, if it is one, to the running script.
void require(const Outcome& outcome);

} // namespace vesk::commands
