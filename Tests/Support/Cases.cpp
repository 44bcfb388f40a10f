#include "Tests/Support/Cases.h"

#include "Base/QxBaseCore10/Strings.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

nlohmann::json casesOf(const std::string& file) {
    std::ifstream stream(std::string(TEST_SOURCES "/Cases/") + file);
    if (!stream)
        throw std::runtime_error("there is no file " + file + " in Tests/Cases");
    return nlohmann::json::parse(stream);
}

nlohmann::json casesOf(const std::string& file, const std::string& system) {
    nlohmann::json rows = casesOf(file);
    for (nlohmann::json& row : rows)
        row.merge_patch(row.value("on" + system, nlohmann::json::object()));
    return rows;
}

std::string bytesOf(const nlohmann::json& text) {
    std::string bytes;
    for (const wchar_t character : Qx::ToIString(text.get<std::string>()))
        bytes += static_cast<char>(character);
    return bytes;
}

std::string firstMissingPart(const std::string& text, const std::vector<std::string>& parts) {
    std::size_t at = 0;
    for (const std::string& part : parts) {
        at = text.find(part, at);
        if (at == std::string::npos)
            return part;
        ++at;
    }
    return {};
}

std::string wholeAssembly() {
    return casesOf("assembly.json").at(0).at("json").dump();
}
