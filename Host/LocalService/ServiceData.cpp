#include "Host/LocalService/ServiceData.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Host/LocalService/SampleData.h"

#include <array>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <charconv>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace OrvaneHost {

namespace {

constexpr std::array<std::pair<std::string_view, ServiceData::Address>, 3> folderNames{{
    {"folders", ServiceData::Address::FOLDER_CONTENTS},
    {"assemblies", ServiceData::Address::FULL_ASSEMBLY},
    {"access", ServiceData::Address::FULL_ASSEMBLY_ACCESS},
}};

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file)
        throw std::runtime_error(fmt::format("can't read \"{}\"", path.string()));
    return text;
}

// A text is an answer of status 200, unless it holds errors: then it has the status of the first.
int statusOf(const Qx::JSONNode& root) {
    const Qx::JSONNode errors(root["errors"]);
    if (errors.begin() == errors.end())
        return 200;
    int status = 500;
    const std::string text = Qx::JSONNode(*errors.begin())["status"].asHString("");
    std::from_chars(text.data(), text.data() + text.size(), status);
    return status;
}

} // namespace

ServiceData ServiceData::sample() {
    ServiceData data;
    for (const SampleText& text : sampleTexts)
        for (const auto& [name, address] : folderNames)
            if (std::string_view(text.path).starts_with(name))
                data.add(address, text.json, text.path);
    return data;
}

ServiceData ServiceData::fromFolder(const std::filesystem::path& folder) {
    ServiceData data;
    for (const auto& [name, address] : folderNames) {
        if (!std::filesystem::exists(folder / name))
            continue;
        for (const auto& entry : std::filesystem::directory_iterator(folder / name))
            if (entry.is_regular_file() && entry.path().extension() == ".json")
                data.add(address, readFile(entry.path()), entry.path().string());
    }
    if (data.answers_.empty())
        throw std::runtime_error(
            fmt::format("no file *.json in \"folders\", \"assemblies\" or \"access\" of \"{}\"", folder.string()));
    return data;
}

void ServiceData::add(Address address, const std::string& json, const std::string& origin) {
    const Qx::JSONNode root(json);
    const Qx::JSONNode data(root["data"]);
    if (!data.exists("id"))
        throw std::runtime_error(fmt::format("\"{}\" is not JSON with a key \"data.id\"", origin));
    answers_.insert_or_assign({address, data["id"].asHString("")}, Answer{statusOf(root), json});
}

ServiceData::Answer ServiceData::find(Address address, const std::string& urn) const {
    const auto found = answers_.find({address, urn});
    if (found != answers_.end())
        return found->second;
    return {404, errorBody(404, "Not found", "The service has nothing under " + urn + " here.")};
}

std::string ServiceData::errorBody(int status, const std::string& title, const std::string& detail) {
    // The detail may name what a client asked for, which need not be UTF-8; the body has to be.
    const boost::json::value error = {
        {"status", std::to_string(status)}, {"title", title}, {"detail", Qx::ToHString(Qx::ToIString(detail))}};
    return boost::json::serialize(boost::json::object{{"errors", boost::json::array{error}}});
}

} // namespace OrvaneHost
