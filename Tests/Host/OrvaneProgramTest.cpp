// Runs the program as a user does.

#include "Base/QxBaseCore10/JSONNode.h"
#include "Host/LocalService/LocalService.h"
#include "Host/ProcessState.h"
#include "Tests/Support/Cases.h"
#include "Tests/Support/Network.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Outcome {
    int exitStatus;
    std::string output;
    std::string error;
};

std::string takeFile(const std::string& path) {
    std::ifstream file(path);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    std::remove(path.c_str());
    return text;
}

// Runs `orvane` with the arguments, which the shell reads. "$ORVANE" stands for the program where a case
// needs more.
Outcome run(const std::string& arguments, const std::string& token = "") {
    const std::string base = testing::TempDir() + "orvane-run-" + std::to_string(getpid());
    const bool isScript = arguments.find("$ORVANE") != std::string::npos;
    const std::string command = "ORVANE=" ORVANE_PROGRAM "; export ORVANE_TOKEN='" + token + "'; { " +
                                (isScript ? arguments : "\"$ORVANE\" " + arguments) + "; } >" + base + ".out 2>" +
                                base + ".err";
    const int status = std::system(command.c_str());
    return {WEXITSTATUS(status), takeFile(base + ".out"), takeFile(base + ".err")};
}

const std::string version = "'urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7'";
const std::string folder = "urn:vrnk.dorlqa:fs.folder:";

std::string replaced(std::string text, const std::string& placeholder, const std::string& value) {
    for (auto at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder, at + value.size()))
        text.replace(at, placeholder.size(), value);
    return text;
}

void expectParts(const std::string& text, const nlohmann::json& tested, const char* key, bool areThere) {
    std::size_t at = 0;
    for (const std::string part : tested.value(key, nlohmann::json::array())) {
        const std::size_t found = text.find(part, areThere ? at : 0);
        EXPECT_EQ(found != std::string::npos, areThere) << tested["shows"] << ": " << part << " in " << text;
        at = found;
    }
}

// A failure is one line, or as many as there are "errors", and nothing else, unless the case says what is printed.
void expectOutcome(const Outcome& outcome, const nlohmann::json& tested) {
    EXPECT_EQ(outcome.exitStatus, tested.at("status")) << tested["shows"] << outcome.error;
    expectParts(outcome.output, tested, "prints", true);
    expectParts(outcome.output + outcome.error, tested, "hides", false);
    if (!tested.contains("error")) {
        EXPECT_EQ(outcome.error, "") << tested["shows"];
        return;
    }
    EXPECT_TRUE(outcome.output.empty() || tested.contains("prints")) << tested["shows"] << outcome.output;
    EXPECT_EQ(outcome.error.substr(0, 8), "orvane: ") << tested["shows"];
    EXPECT_EQ(std::count(outcome.error.begin(), outcome.error.end(), '\n'), tested.value("errors", 1)) << outcome.error;
    EXPECT_NE(outcome.error.find(tested["error"]), std::string::npos) << tested["shows"] << outcome.error;
}

TEST(OrvaneProgram, DoesWhatTheCasesSay) {
    const OrvaneHost::LocalService service(OrvaneHost::ServiceData::sample(), "right", 0);
    for (const nlohmann::json& tested : casesOf("program.json")) {
        const RawServer server = Network::serve(tested);
        std::string command = replaced(tested.at("run"), "{version}", version);
        command = replaced(command, "{service}", service.baseUri());
        command = replaced(command, "{secure server}", "https" + server.url("").substr(4));
        command = replaced(command, "{server}", server.url(""));
        expectOutcome(run(command, tested.value("token", "")), tested);
        expectParts(server.received(), tested, "receives", true);
        EXPECT_TRUE(!tested.contains("receives") || tested["receives"].empty() == server.received().empty());
    }
}

TEST(OrvaneProgram, ShowsTheSampleAlikeInBothExecutionTypes) {
    for (const std::string& command : {"folder " + folder + "gearbox", "assembly " + version, "access " + version}) {
        const Outcome sync = run(command);
        EXPECT_EQ(sync.exitStatus, 0) << sync.error;
        EXPECT_NE(sync.output.find("Planetengetriebe PG-80.asm"), std::string::npos) << sync.output;
        EXPECT_EQ(run(command + " --async").output, sync.output);
    }
}

TEST(OrvaneProgram, AssemblyTellsAllThatTheDocumentAnswers) {
    const nlohmann::json report = nlohmann::json::parse(run("assembly " + version + " --json").output);
    for (const auto& [key, size] : std::initializer_list<std::pair<const char*, std::size_t>>{{"directReferences", 13},
                                                                                              {"allFiles", 26},
                                                                                              {"projectDetails", 4},
                                                                                              {"archived", 2},
                                                                                              {"inactive", 1},
                                                                                              {"deleted", 1},
                                                                                              {"accessDenied", 3},
                                                                                              {"memberships", 3},
                                                                                              {"usageEvents", 8}})
        EXPECT_EQ(report.at(key).size(), size) << key;
}

TEST(OrvaneProgram, ServesUntilInterruptedAndLeavesNoCore) {
    const std::string base = testing::TempDir() + "orvane-serve-" + std::to_string(getpid());
    const Outcome result =
        run("$ORVANE serve >" + base + " & for i in $(seq 200); do grep -q Interrupt " + base +
                " && break; sleep 0.05; done; grep 'core file' /proc/$!/limits; kill $!; wait $!; status=$?; cat " +
                base + "; rm " + base + "; exit $status",
            "s3cret");
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_NE(result.output.find("Serving at http://127.0.0.1:"), std::string::npos);
    EXPECT_EQ(result.output.find("s3cret"), std::string::npos);
    std::istringstream limits(result.output.substr(result.output.find("size") + 4));
    std::string soft;
    EXPECT_EQ((limits >> soft, soft), "0") << result.output;
}

TEST(OrvaneProgram, KeepsItsMemoryFromTheUsersOtherPrograms) {
    const pid_t child = fork();
    if (child == 0) {
        OrvaneHost::keepMemoryPrivate();
        _exit(prctl(PR_GET_DUMPABLE));
    }
    int status = 1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

} // namespace
