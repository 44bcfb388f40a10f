// FUZZER [--mutations COUNT] PATH...: runs a fuzzer without libFuzzer, on the files in each folder
// PATH and on COUNT mutations of them. Of a file in Tests/Cases, each case is an input.

#include "Fuzz/Mutation.h"
#include "Tests/Support/Cases.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace {

// Returns a document that contains the value if it is a record, and the value itself otherwise.
nlohmann::json bodyOf(const nlohmann::json& value) {
    const nlohmann::json type = value.is_object() ? value.value("type", nlohmann::json()) : nlohmann::json();
    if (type == "relationships")
        return {{"data", {{"relationships", {value}}}}};
    for (const char* kind : {"files", "folders", "projects", "versions"})
        if (type == kind)
            return {{"included", {{kind, {value}}}}};
    return value;
}

void addInputs(const std::filesystem::path& file, std::vector<std::string>& inputs) {
    std::ifstream stream(file);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (file.parent_path().filename() != "Cases") {
        inputs.push_back(std::move(text));
        return;
    }
    for (const nlohmann::json& tested : nlohmann::json::parse(text)) {
        if (tested.contains("json"))
            inputs.push_back(bodyOf(tested["json"]).dump());
        else if (tested.contains("text"))
            inputs.push_back(tested["text"]);
        else if (tested.contains("bytes"))
            inputs.push_back(bytesOf(tested["bytes"]));
    }
}

void run(const std::string& input) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

} // namespace

int main(int argc, char** argv) try {
    std::vector<std::string> inputs;
    unsigned long mutations = 0;
    for (int i = 1; i < argc; ++i) {
        if (argv[i] == std::string_view("--mutations") && i + 1 < argc) {
            mutations = std::stoul(argv[++i]);
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
            addInputs(entry.path(), inputs);
    }
    std::sort(inputs.begin(), inputs.end()); // The file system lists files in no particular order.
    for (const std::string& input : inputs)
        run(input);
    std::mt19937 random(1);
    const std::size_t given = inputs.size();
    for (unsigned long i = 0; i < mutations; ++i)
        run(OrvaneFuzz::mutateValues(inputs[random() % given], random));
    std::printf("%zu inputs and %lu mutations of them: no findings\n", given, mutations);
    return given > 0 ? 0 : 1;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
