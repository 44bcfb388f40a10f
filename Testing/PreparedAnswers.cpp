#include "Testing/PreparedAnswers.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Testing/Detail/Exchange.h"
#include "Testing/Detail/Files.h"
#include "Testing/Detail/SampleData.h"

#include <array>
#include <charconv>
#include <fmt/format.h>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace Orvane::Testing {

namespace {

using Qx::HTTPResponse;

constexpr std::array<std::pair<std::string_view, Endpoint::Kind>, 3> folderNames{{
    {"folders", Endpoint::Kind::FOLDER_CONTENTS},
    {"assemblies", Endpoint::Kind::FULL_ASSEMBLY},
    {"access", Endpoint::Kind::FULL_ASSEMBLY_ACCESS},
}};

// In the order of `Endpoint::Kind`.
constexpr std::array kindNames{"the contents of folder", "the full assembly of", "access to the full assembly of"};

// Returns the status of the first error, or 200 if there are no errors.
int statusOf(const Qx::JSONNode& root) {
    const Qx::JSONNode errors(root["errors"]);
    if (errors.begin() == errors.end())
        return 200;
    int status = 0;
    const std::string text = Qx::JSONNode(*errors.begin())["status"].asHString("500");
    const char* const end = text.data() + text.size();
    return std::from_chars(text.data(), end, status).ptr == end ? status : 0;
}

// Returns the path and query of a URL.
std::string withoutHost(const std::string& url) {
    const std::size_t host = url.find("://");
    const std::size_t path = url.find('/', host == std::string::npos ? 0 : host + 3);
    return path == std::string::npos ? "/" : url.substr(path);
}

} // namespace

PreparedAnswers PreparedAnswers::sample() {
    PreparedAnswers answers;
    for (const Detail::SampleText& text : Detail::sampleTexts)
        for (const auto& [name, kind] : folderNames)
            if (std::string_view(text.path).starts_with(name))
                answers.addJSON(kind, text.json, text.path);
    return answers;
}

PreparedAnswers PreparedAnswers::fromFolder(const std::filesystem::path& folder) {
    std::error_code error;
    if (!std::filesystem::exists(folder, error) && !error)
        throw std::runtime_error(fmt::format("there is no folder {}", Detail::shown(folder)));
    PreparedAnswers answers;
    for (const std::filesystem::path& file : Detail::filesIn(folder, Detail::exchangeExtension)) {
        Detail::Exchange exchange = Detail::readExchange(file);
        answers.add(exchange.method, withoutHost(exchange.url), exchange.response);
        answers.add(exchange.method, exchange.url, std::move(exchange.response));
    }
    for (const auto& [name, kind] : folderNames) {
        std::map<std::string, std::filesystem::path> fileOfURN;
        for (const std::filesystem::path& file : Detail::filesIn(folder / name, ".json")) {
            const std::string urn = answers.addJSON(kind, Detail::readFile(file), Detail::shown(file));
            const auto [first, isFirst] = fileOfURN.try_emplace(urn, file);
            if (!isFirst)
                throw std::runtime_error(fmt::format("{} and {} answer for the same URN", Detail::shown(first->second),
                                                     Detail::shown(file)));
        }
    }
    if (answers.byURN_.empty() && answers.byURL_.empty())
        throw std::runtime_error(
            fmt::format("no file *.json in \"folders\", \"assemblies\" or \"access\" of {}, and no recorded exchange",
                        Detail::shown(folder)));
    return answers;
}

void PreparedAnswers::add(Endpoint endpoint, HTTPResponse response) {
    byURN_.insert_or_assign(std::move(endpoint), std::move(response));
}

void PreparedAnswers::add(Method method, const std::string& url, HTTPResponse response) {
    if (auto endpoint = Endpoint::of(method, url))
        add(*std::move(endpoint), std::move(response));
    else
        byURL_.insert_or_assign({method, url}, std::move(response));
}

std::string PreparedAnswers::addJSON(Endpoint::Kind kind, const std::string& json, const std::string& origin) {
    const Qx::JSONNode root(json);
    const Qx::JSONNode data(root["data"]);
    const int status = statusOf(root);
    if (!data.exists("id"))
        throw std::runtime_error(fmt::format("{} is not JSON with a key \"data.id\"", origin));
    if (!Detail::isFinalStatus(status))
        throw std::runtime_error(fmt::format("the first error in {} has no status from 200 to 599", origin));
    std::string urn = data["id"].asHString("");
    add({kind, urn}, HTTPResponse(status, json, {{"Content-Type", "application/json; charset=utf-8"}}));
    return urn;
}

void PreparedAnswers::addForAny(HTTPResponse response) {
    forAny_ = std::move(response);
}

std::optional<HTTPResponse> PreparedAnswers::find(Method method, const std::string& url) const {
    if (const auto endpoint = Endpoint::of(method, url))
        if (const auto found = byURN_.find(*endpoint); found != byURN_.end())
            return found->second;
    for (const std::string& known : {url, withoutHost(url)})
        if (const auto found = byURL_.find({method, known}); found != byURL_.end())
            return found->second;
    return forAny_;
}

std::vector<std::string> PreparedAnswers::expectedRequests() const {
    std::vector<std::string> expected;
    for (const auto& [endpoint, response] : byURN_)
        expected.push_back(fmt::format("{} {}", kindNames.at(static_cast<std::size_t>(endpoint.kind)), endpoint.urn));
    for (const auto& [request, response] : byURL_)
        expected.push_back(fmt::format("{} {}", Detail::nameOf(request.first), request.second));
    return expected;
}

} // namespace Orvane::Testing
