#include "Testing/Detail/JSONRewriter.h"

#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/serialize.hpp>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Orvane::Testing::Detail {

namespace {

using boost::json::error_code;
using boost::json::string_view;

// The handler that the parser calls for each part of the JSON.
class Rewriter {
public:
    static constexpr std::size_t max_object_size = SIZE_MAX;
    static constexpr std::size_t max_array_size = SIZE_MAX;
    static constexpr std::size_t max_key_size = SIZE_MAX;
    static constexpr std::size_t max_string_size = SIZE_MAX;

    explicit Rewriter(const JSONReplacements& replacements) : replacements_(replacements) {}

    std::string take() { return std::move(written_); }

    bool on_document_begin(error_code&) { return true; }
    bool on_document_end(error_code&) { return true; }
    bool on_object_begin(error_code&) { return open('{'); }
    bool on_object_end(std::size_t, error_code&) { return close('}'); }
    bool on_array_begin(error_code&) { return open('['); }
    bool on_array_end(std::size_t, error_code&) { return close(']'); }
    bool on_key_part(string_view text, std::size_t, error_code&) { return keep(text); }
    bool on_string_part(string_view text, std::size_t, error_code&) { return keep(text); }
    bool on_number_part(string_view text, error_code&) { return keep(text); }
    bool on_int64(std::int64_t, string_view text, error_code&) { return writeNumber(text); }
    bool on_uint64(std::uint64_t, string_view text, error_code&) { return writeNumber(text); }
    bool on_double(double, string_view text, error_code&) { return writeNumber(text); }
    bool on_bool(bool value, error_code&) { return write(value ? "true" : "false"); }
    bool on_null(error_code&) { return write("null"); }
    bool on_comment_part(string_view, error_code&) { return true; }
    bool on_comment(string_view, error_code&) { return true; }

    bool on_key(string_view text, std::size_t, error_code&) {
        const std::string key = takeText(text);
        separate();
        written_ += boost::json::serialize(string_view(replacements_.forKey(key))) + ':';
        isAfterKey_ = true;
        keys_.back() = key == "value" ? enclosingKey() : key;
        return true;
    }

    bool on_string(string_view text, std::size_t, error_code&) {
        return write(boost::json::serialize(string_view(replacements_.forText(takeText(text), key()))));
    }

private:
    std::string_view key() const { return keys_.empty() ? std::string_view() : keys_.back(); }

    std::string enclosingKey() const { return keys_.size() < 2 ? std::string() : keys_[keys_.size() - 2]; }

    bool keep(string_view text) {
        text_.append(text.data(), text.size());
        return true;
    }

    std::string takeText(string_view rest) {
        keep(rest);
        return std::exchange(text_, {});
    }

    bool writeNumber(string_view text) { return write(replacements_.forNumber(takeText(text), key())); }

    bool write(std::string_view value) {
        if (!std::exchange(isAfterKey_, false))
            separate();
        written_ += value;
        return true;
    }

    void separate() {
        if (!written_.empty() && written_.back() != '{' && written_.back() != '[' && written_.back() != ':')
            written_ += ',';
    }

    bool open(char bracket) {
        write({&bracket, 1});
        keys_.emplace_back(key());
        return true;
    }

    bool close(char bracket) {
        keys_.pop_back();
        written_ += bracket;
        return true;
    }

    const JSONReplacements& replacements_;
    std::string written_;
    std::string text_;              // The current key, string or number, as parsed so far.
    std::vector<std::string> keys_; // The current key of each level.
    bool isAfterKey_ = false;
};

} // namespace

std::string rewriteJSON(std::string_view json, const JSONReplacements& replacements) {
    boost::json::parse_options options;
    options.max_depth = 1025;
    boost::json::basic_parser<Rewriter> parser(options, replacements);
    error_code error;
    parser.write_some(false, json.data(), json.size(), error);
    return parser.handler().take();
}

} // namespace Orvane::Testing::Detail
