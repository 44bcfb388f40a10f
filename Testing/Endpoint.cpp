#include "Testing/Endpoint.h"

#include <array>
#include <charconv>
#include <string_view>

namespace Orvane::Testing {

namespace {

using Method = Qx::HTTPRequest::Method;
using Kind = Endpoint::Kind;

struct Form {
    Kind kind;
    Method method;
    std::string_view before;
    std::string_view after;
};

constexpr std::array forms{Form{Kind::FOLDER_CONTENTS, Method::GET, "/folders/", "/content"},
                           Form{Kind::FULL_ASSEMBLY, Method::GET, "/versions/", "/fullassembly"},
                           Form{Kind::FULL_ASSEMBLY_ACCESS, Method::POST, "/versions/", "/fullassembly/access"}};

// Decodes percent-encoding. A "%" that does not begin an encoded byte is kept.
std::string decoded(std::string_view text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned byte = 0;
        const std::string_view digits = text.substr(at + 1, text[at] == '%' ? 2 : 0);
        const char* const end = digits.data() + digits.size();
        if (digits.size() == 2 && std::from_chars(digits.data(), end, byte, 16).ptr == end) {
            plain += static_cast<char>(byte);
            at += digits.size();
        } else {
            plain += text[at];
        }
    }
    return plain;
}

} // namespace

std::optional<Endpoint> Endpoint::of(Method method, const std::string& url) {
    for (const Form& form : forms) {
        const std::size_t start = url.find(form.before);
        if (method != form.method || start == std::string::npos)
            continue;
        // The URN of a folder is not encoded, so it may contain "?" and "/".
        const std::size_t urn = start + form.before.size();
        for (std::size_t end = url.find(form.after, urn); end != std::string::npos;
             end = url.find(form.after, end + 1)) {
            const std::string_view rest = std::string_view(url).substr(end + form.after.size());
            if (rest.empty() || rest.starts_with('?'))
                return Endpoint{form.kind, decoded(std::string_view(url).substr(urn, end - urn))};
        }
    }
    return std::nullopt;
}

} // namespace Orvane::Testing
