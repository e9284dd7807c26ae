#include "host/scene/ascii_reader.h"

#include "host/commands/attribute_commands.h"
#include "host/core/log.h"
#include "host/scene/text_words.h"

#include <algorithm>
#include <cstring>

namespace vesk::scene {

namespace {

constexpr std::size_t kHeaderBytes = 4096; ///< looked at to tell text from other files

bool isBlank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }

bool isNameLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

bool isText(std::string_view text) {
    const auto head = text.substr(0, kHeaderBytes);
    return std::none_of(head.begin(), head.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 && !isBlank(c);
    });
}

/// Whether a statement begins with a word of the language, not with a command.
bool beginsScript(std::string_view statement) {
    static constexpr std::string_view kWords[] = {"global", "proc", "if",     "for",
                                                  "while",  "do",   "switch", "else"};
    std::size_t length = 0;
    while (length < statement.size() && isNameLetter(statement[length]))
        ++length;
    const auto word = statement.substr(0, length);
    return word.empty() || std::find(std::begin(kWords), std::end(kWords), word) != std::end(kWords);
}

class Reader {
  public:
    Reader(commands::CommandContext& context, std::string_view text, const std::string& fileName)
        : context_(context), text_(text), file_(fileName) {
        if (text_.substr(0, 3) == "\xEF\xBB\xBF") text_.remove_prefix(3);
    }

    Outcome read() {
        if (!isText(text_)) return Outcome::fail("'" + file_ + "' is no Maya ASCII scene: it is not a text.");
        while (skipBetween()) {
            const std::size_t start = at_;
            const int line = line_;
            const End end = findEnd();
            if (end == End::Missing) {
                return Outcome::fail(place(line) + "the file ends inside the statement that begins here.");
            }
            if (end == End::Block) {
                // Scripts are no part of the format, but some files hold them: the interpreter takes it from
                // here.
                script(text_.substr(start), line);
                break;
            }
            statement(text_.substr(start, at_ - start), line);
            ++at_; // the semicolon
            if (errors_ >= kMostLineErrors) {
                return Outcome::fail("'" + file_ + "': too many errors, reading stopped at line " +
                                     std::to_string(line_) + ".");
            }
        }
        if (isCutOff_) return Outcome::fail(place(line_) + "the file ends inside a comment.");
        if (errors_ > 0) {
            return Outcome::fail("'" + file_ + "': " + std::to_string(errors_) +
                                 " statement(s) could not be read.");
        }
        return {};
    }

  private:
    std::string place(int line) const { return "file \"" + file_ + "\" line " + std::to_string(line) + ": "; }

    void fail(int line, const std::string& message) {
        ++errors_;
        log().error(place(line) + message);
    }

    void step() {
        if (text_[at_] == '\n') ++line_;
        ++at_;
    }

    /// To the next statement; false at the end of the text.
    bool skipBetween() {
        while (at_ < text_.size()) {
            if (isBlank(text_[at_]) || text_[at_] == ';') {
                step();
            } else if (text_.compare(at_, 2, "//") == 0) {
                while (at_ < text_.size() && text_[at_] != '\n')
                    ++at_;
            } else if (text_.compare(at_, 2, "/*") == 0) {
                const auto close = text_.find("*/", at_ + 2);
                const auto to = close == std::string_view::npos ? text_.size() : close + 2;
                isCutOff_ = close == std::string_view::npos;
                while (at_ < to)
                    step();
            } else {
                return true;
            }
        }
        return false;
    }

    enum class End { Semicolon, Block, Missing };

    /// To the semicolon that ends the statement, or to the brace that opens a block of script.
    End findEnd() {
        const bool isScript = beginsScript(text_.substr(at_));
        while (at_ < text_.size()) {
            const char c = text_[at_];
            if (c == ';') return End::Semicolon;
            if (c == '{' && isScript) return End::Block;
            if (c == '"') {
                if (!skipQuoted()) return End::Missing;
            } else if (text_.compare(at_, 2, "//") == 0) {
                while (at_ < text_.size() && text_[at_] != '\n')
                    ++at_;
            } else {
                step();
            }
        }
        return End::Missing;
    }

    bool skipQuoted() {
        for (step(); at_ < text_.size(); step()) {
            if (text_[at_] == '\\') {
                step();
                if (at_ >= text_.size()) return false;
            } else if (text_[at_] == '"') {
                step();
                return true;
            }
        }
        return false;
    }

    void statement(std::string_view text, int line) {
        std::size_t nameEnd = 0;
        while (nameEnd < text.size() && isNameLetter(text[nameEnd]))
            ++nameEnd;
        const std::string_view name = text.substr(0, nameEnd);
        const std::string_view rest = text.substr(nameEnd);
        if (name == "setAttr" && (rest.empty() || isBlank(rest.front()))) {
            TextWords words(rest);
            if (auto outcome = commands::setAttrFrom(context_, words); !outcome) fail(line, outcome.error);
            return;
        }
        const auto command = context_.mel.commands().share(name);
        if (!command || !isPlain(rest)) return script(text, line);
        const auto values = valuesOf(rest);
        try {
            mel::Call call{name, values, {}, context_.mel};
            (void)(*command)(call);
        } catch (const mel::Error& error) {
            fail(line, error.message());
        }
    }

    /// Words only: nothing that the language would have to work out.
    static bool isPlain(std::string_view rest) {
        if (!rest.empty() && !isBlank(rest.front())) return false;
        bool quoted = false;
        for (std::size_t i = 0; i < rest.size(); ++i) {
            const char c = rest[i];
            if (quoted && c == '\\') {
                ++i;
            } else if (c == '"') {
                quoted = !quoted;
            } else if (!quoted && (c == '$' || c == '`' || c == '(' || c == '=')) {
                return false;
            }
        }
        return true;
    }

    void script(std::string_view text, int line) {
        std::string whole(text);
        whole += ';';
        try {
            (void)context_.mel.evaluate(whole, file_, line);
        } catch (const mel::Error& error) {
            ++errors_;
            if (!error.isReported())
                log().error(error.isPlaced() ? error.describe() : place(line) + error.message());
        }
    }

    commands::CommandContext& context_;
    std::string_view text_;
    const std::string& file_;
    std::size_t at_ = 0;
    int line_ = 1;
    int errors_ = 0;
    bool isCutOff_ = false;
};

} // namespace

Outcome readAscii(commands::CommandContext& context, std::string_view text, const std::string& fileName) {
    const bool wasReading = context.scene.readingFile;
    const Ref<graph::Node> outer = context.currentNode;
    context.scene.readingFile = true;
    const Outcome outcome = Reader(context, text, fileName).read();
    context.scene.readingFile = wasReading;
    context.currentNode = outer;
    return outcome;
}

} // namespace vesk::scene
