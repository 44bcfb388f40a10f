#include "Base/QxBaseCore10/Detail/JSONRepair.h"

#include "Base/QxBaseCore10/Detail/Decoding.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <new>
#include <simdjson.h>

namespace Qx::Detail {

namespace {

using UTF16 = boost::nowide::utf::utf_traits<char16_t>;

constexpr std::string_view replacement = "\xEF\xBF\xBD"; // U+FFFD
constexpr std::size_t escapeSize = 6;                    // \uD800

// Removes up to `most` of `characters` from the front. Returns whether there were any.
bool take(std::string_view& text, std::string_view characters, std::size_t most = std::string_view::npos) {
    const std::size_t count = std::min({text.find_first_not_of(characters), text.size(), most});
    text.remove_prefix(count);
    return count > 0;
}

// Whether the text is a number by JSON's grammar.
bool isNumber(std::string_view text) {
    constexpr std::string_view digits = "0123456789";
    take(text, "-", 1);
    const bool hasInteger = take(text, "0", 1) || take(text, digits);
    const bool hasFraction = !take(text, ".", 1) || take(text, digits);
    const bool hasExponent = !take(text, "eE", 1) || (take(text, "+-", 1), take(text, digits));
    return hasInteger && hasFraction && hasExponent && text.empty();
}

// Whether `number`, if it is a number at all, is well within the parser's limits, as most are.
bool isClearlyAccepted(std::string_view number) {
    const std::size_t exponent = std::min(number.find_first_of("eE"), number.size());
    const std::size_t most = number.find_first_of(".eE") == std::string_view::npos ? 18 : 200;
    return number.size() <= most && number.size() - exponent <= std::string_view("e99").size();
}

class Repairer {
public:
    explicit Repairer(std::string_view text) : text_(text) {}

    std::string repair() {
        while (at_ < text_.size()) {
            const char first = text_[at_];
            if (first == '"')
                repairString();
            else if (first == '-' || (first >= '0' && first <= '9'))
                repairNumber();
            else
                ++at_;
        }
        if (!repaired_.empty())
            repaired_.append(text_, taken_).append(simdjson::SIMDJSON_PADDING, '\0');
        return std::move(repaired_);
    }

private:
    void repairString() {
        ++at_;
        while (at_ < text_.size() && text_[at_] != '"') {
            if (text_[at_] == '\\')
                repairEscape();
            else if (static_cast<unsigned char>(text_[at_]) < 0x80)
                ++at_;
            else
                repairCharacter();
        }
        ++at_;
    }

    void repairEscape() {
        const std::uint16_t unit = escapedUnit(at_);
        if (UTF16::is_first_surrogate(unit) && UTF16::is_second_surrogate(escapedUnit(at_ + escapeSize)))
            at_ += 2 * escapeSize;
        else if (!UTF16::is_single_codepoint(unit))
            replace(escapeSize, replacement);
        else
            at_ += 2; // Skips the escaped character too, which may be a quote.
    }

    void repairCharacter() {
        const char* next = text_.data() + at_;
        decodeNext(next, text_.data() + text_.size());
        const auto size = static_cast<std::size_t>(next - text_.data()) - at_;
        if (size == 1) // Not valid: a character beyond ASCII has at least two bytes.
            replace(size, replacement);
        else
            at_ += size;
    }

    void repairNumber() {
        const std::size_t end = std::min(text_.find_first_not_of("+-.0123456789eE", at_), text_.size());
        const std::string_view number = text_.substr(at_, end - at_);
        // Replaces the number only where a value may end: before a colon, for example, a number is
        // an error, but the string that replaces it would not be.
        const std::size_t next = std::min(text_.find_first_not_of(" \t\n\r", end), text_.size());
        const bool endsValue =
            next == text_.size() || std::string_view(",]}").find(text_[next]) != std::string_view::npos;
        if (endsValue && isRefused(number))
            replace(number.size(), '"' + std::string(number) + '"');
        else
            at_ = end;
    }

    // Asks the parser itself, since only it knows which numbers it accepts.
    bool isRefused(std::string_view number) {
        if (isClearlyAccepted(number) || !isNumber(number))
            return false;
        const simdjson::error_code error = parser_.parse(number.data(), number.size()).error();
        if (error == simdjson::MEMALLOC)
            throw std::bad_alloc();
        return error != simdjson::SUCCESS;
    }

    // Returns the UTF-16 code unit that is escaped at `at`; 0 if there is none.
    std::uint16_t escapedUnit(std::size_t at) const {
        std::uint16_t unit = 0;
        if (at + escapeSize > text_.size() || text_.substr(at, 2) != "\\u")
            return unit;
        const char* const end = text_.data() + at + escapeSize;
        return std::from_chars(text_.data() + at + 2, end, unit, 16).ptr == end ? unit : std::uint16_t{0};
    }

    void replace(std::size_t size, std::string_view with) {
        repaired_.reserve(text_.size() + text_.size() / 8 + simdjson::SIMDJSON_PADDING);
        repaired_.append(text_, taken_, at_ - taken_);
        repaired_ += with;
        at_ += size;
        taken_ = at_;
    }

    const std::string_view text_;
    std::size_t at_ = 0;
    std::size_t taken_ = 0; // Everything before this is already in `repaired_`.
    std::string repaired_;
    simdjson::dom::parser parser_;
};

} // namespace

std::string repairJSON(std::string_view text) {
    return Repairer(text).repair();
}

} // namespace Qx::Detail
