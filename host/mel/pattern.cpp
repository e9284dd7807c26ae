#include "host/mel/pattern.h"

#include "host/mel/error.h"

#include <bitset>
#include <string>
#include <utility>
#include <vector>

namespace vesk::mel {

namespace {

constexpr int kMaxGroups = 100; ///< parentheses within each other

using Bytes = std::bitset<256>;

std::size_t byteOf(char c) { return static_cast<unsigned char>(c); }

/// Reads `[...]` from the bracket on and moves `at` behind it; nothing when it has no end.
std::optional<Bytes> readSet(std::string_view pattern, std::size_t& at) {
    Bytes set;
    std::size_t i = at + 1;
    const bool inverted = i < pattern.size() && pattern[i] == '^';
    if (inverted) ++i;
    for (bool first = true;; first = false) {
        if (i >= pattern.size()) return std::nullopt;
        if (pattern[i] == ']' && !first) break;
        const std::size_t from = byteOf(pattern[i]);
        std::size_t to = from;
        if (i + 2 < pattern.size() && pattern[i + 1] == '-' && pattern[i + 2] != ']') {
            to = byteOf(pattern[i + 2]);
            i += 2;
        }
        for (std::size_t byte = from; byte <= to; ++byte)
            set.set(byte);
        ++i;
    }
    at = i + 1;
    return inverted ? ~set : set;
}

/// A step of a compiled pattern. Split goes on at both `next` and `other`.
struct Step {
    enum class Kind { Byte, Split, Start, End, Match };
    Kind kind = Kind::Match;
    std::size_t next = 0;
    std::size_t other = 0;
    Bytes bytes;
};

class PatternCompiler {
  public:
    explicit PatternCompiler(std::string_view pattern) : pattern_(pattern) {}

    std::vector<Step> compile() {
        sequence(0);
        if (at_ < pattern_.size()) fail();
        add(Step::Kind::Match);
        return std::move(steps_);
    }

  private:
    [[noreturn]] void fail() const { throw Error("Malformed pattern \"" + std::string(pattern_) + "\"."); }

    std::size_t add(Step::Kind kind) {
        Step step;
        step.kind = kind;
        step.next = steps_.size() + 1;
        steps_.push_back(step);
        return steps_.size() - 1;
    }

    void sequence(int depth) {
        if (depth > kMaxGroups) fail();
        while (at_ < pattern_.size() && pattern_[at_] != ')') {
            const std::size_t start = steps_.size();
            atom(depth);
            repeat(start);
        }
    }

    void atom(int depth) {
        const char c = pattern_[at_++];
        if (c == '(') {
            sequence(depth + 1);
            if (at_ >= pattern_.size()) fail();
            ++at_;
        } else if (c == '^' && at_ == 1) {
            add(Step::Kind::Start);
        } else if (c == '$' && at_ == pattern_.size()) {
            add(Step::Kind::End);
        } else {
            --at_;
            Bytes bytes = oneByte();
            steps_[add(Step::Kind::Byte)].bytes = bytes;
        }
    }

    Bytes oneByte() {
        Bytes bytes;
        char c = pattern_[at_];
        if (c == '[') {
            const std::optional<Bytes> set = readSet(pattern_, at_);
            if (!set) fail();
            return *set;
        }
        ++at_;
        if (c == '.') return bytes.set();
        if (c == '\\') {
            if (at_ >= pattern_.size()) fail();
            c = pattern_[at_++];
        }
        return bytes.set(byteOf(c));
    }

    /// The sign of repetition behind the steps from `start` on, if there is one.
    void repeat(std::size_t start) {
        const char sign = at_ < pattern_.size() ? pattern_[at_] : '\0';
        if (sign != '*' && sign != '+' && sign != '?') return;
        ++at_;
        if (sign == '+') {
            const std::size_t split = add(Step::Kind::Split);
            steps_[split].other = start;
            return;
        }
        // A split goes before what it may leave out; the steps behind it move on by one.
        steps_.insert(steps_.begin() + static_cast<std::ptrdiff_t>(start), Step{});
        for (std::size_t i = start + 1; i < steps_.size(); ++i) {
            if (steps_[i].next >= start) ++steps_[i].next;
            if (steps_[i].kind == Step::Kind::Split && steps_[i].other >= start) ++steps_[i].other;
        }
        if (sign == '*') {
            const std::size_t back = add(Step::Kind::Split);
            steps_[back].other = start + 1;
        }
        steps_[start].kind = Step::Kind::Split;
        steps_[start].next = start + 1;
        steps_[start].other = steps_.size();
    }

    std::string_view pattern_;
    std::size_t at_ = 0;
    std::vector<Step> steps_;
};

/// Runs all ways through a pattern side by side. Ways that began earlier go first, so that each step is
/// reached by the earliest beginning only.
class Search {
  public:
    Search(const std::vector<Step>& steps, std::string_view text)
        : steps_(steps), text_(text), seen_(steps.size(), npos) {}

    std::optional<Span> run() {
        for (std::size_t at = 0; at <= text_.size(); ++at) {
            if (!found_) reach(0, at, at);
            std::swap(ways_, next_);
            next_.clear();
            if (found_ && ways_.empty()) break;
            if (at == text_.size()) break;
            for (const Way& way : ways_) {
                if (found_ && way.begin > found_->begin) continue;
                const Step& step = steps_[way.step];
                if (step.bytes[byteOf(text_[at])]) reach(step.next, way.begin, at + 1);
            }
        }
        return found_;
    }

  private:
    struct Way {
        std::size_t step;
        std::size_t begin;
    };
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    /// Follows the steps that read nothing from `step` on, at a place in the text.
    void reach(std::size_t step, std::size_t begin, std::size_t at) {
        pending_.push_back(step);
        while (!pending_.empty()) {
            const std::size_t index = pending_.back();
            pending_.pop_back();
            if (seen_[index] == at) continue;
            seen_[index] = at;
            const Step& reached = steps_[index];
            switch (reached.kind) {
            case Step::Kind::Byte: next_.push_back({index, begin}); break;
            case Step::Kind::Split:
                pending_.push_back(reached.other);
                pending_.push_back(reached.next);
                break;
            case Step::Kind::Start:
                if (at == 0) pending_.push_back(reached.next);
                break;
            case Step::Kind::End:
                if (at == text_.size()) pending_.push_back(reached.next);
                break;
            case Step::Kind::Match:
                if (!found_ || found_->begin >= begin) found_ = Span{begin, at - begin};
                break;
            }
        }
    }

    const std::vector<Step>& steps_;
    std::string_view text_;
    std::vector<std::size_t> seen_; ///< by step: the place in the text where it was last reached
    std::vector<Way> ways_;
    std::vector<Way> next_;
    std::vector<std::size_t> pending_;
    std::optional<Span> found_;
};

} // namespace

std::optional<Span> findPattern(std::string_view pattern, std::string_view text) {
    const std::vector<Step> steps = PatternCompiler(pattern).compile();
    return Search(steps, text).run();
}

bool matchesGlob(std::string_view pattern, std::string_view text) {
    std::size_t p = 0;
    std::size_t t = 0;
    // The last star and the place in the text where it ends; on a mismatch it takes one byte more.
    std::size_t star = std::string_view::npos;
    std::size_t starEnd = 0;
    while (t < text.size()) {
        std::size_t next = p + 1;
        bool fits = p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t]);
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            starEnd = t;
            continue;
        }
        if (p < pattern.size() && pattern[p] == '[') {
            std::size_t behind = p;
            if (const std::optional<Bytes> set = readSet(pattern, behind)) {
                fits = (*set)[byteOf(text[t])];
                next = behind;
            }
        }
        if (fits) {
            p = next;
            ++t;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            t = ++starEnd;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

} // namespace vesk::mel
