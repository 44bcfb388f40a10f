#include "Host/TokenFile.h"

#include "Host/PathText.h"
#include "Host/SmallFile.h"

#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>
#include <stdexcept>

namespace OrvaneHost {

namespace {

std::string withoutBlanks(const std::string& text) {
    constexpr const char* blanks = " \t\r\n";
    // Some editors put a byte order mark at the start of UTF-8 files.
    const std::size_t mark = text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    const std::size_t start = std::min(text.find_first_not_of(blanks, mark), text.size());
    return text.substr(start, text.find_last_not_of(blanks) + 1 - start);
}

constexpr std::size_t maxBytes = std::size_t{64} << 10;

std::string readFile(const std::string& path, std::chrono::seconds timeout) {
    try {
        return withoutBlanks(readSmallFile(pathOf(path), maxBytes, timeout));
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(fmt::format("can't read the token file: {}; check --token-file", error.what()));
    }
}

} // namespace

std::string readToken(const std::string& tokenFile, std::chrono::seconds timeout) {
    const char* const variable = std::getenv("ORVANE_TOKEN");
    std::string token = tokenFile.empty() ? std::string(variable ? variable : "") : readFile(tokenFile, timeout);
    const auto isVisible = [](unsigned char byte) { return byte > 0x20 && byte < 0x7F; };
    if (!std::all_of(token.begin(), token.end(), isVisible) || (token.empty() && !tokenFile.empty()))
        throw std::runtime_error(
            "the token is not one word of visible ASCII characters; check ORVANE_TOKEN or --token-file");
    return token;
}

} // namespace OrvaneHost
