// Runs the program as a user does: the rows of Tests/Cases/program.json. Each says what to "run",
// what the output must contain, in order ("prints"), what it must not contain ("hides"), whether
// all of it must be JSON ("isJSON"), and what the "error" message must contain. Some rows have a
// server of their own, as in network.json.

#include "Host/ProcessState.h"
#include "Testing/LocalService.h"
#include "Tests/Support/Cases.h"
#include "Tests/Support/Network.h"

#include <algorithm>
#include <boost/algorithm/string/replace.hpp>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using nlohmann::json;

struct Outcome {
    int exitStatus;
    std::string output;
    std::string error;
};

std::string takeFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    std::filesystem::remove(path);
    std::string lines = text.str();
    boost::replace_all(lines, "\r\n", "\n");
    return lines;
}

// A command that runs the Windows build of the program; null unless that is to be tested.
const char* const programForWindows = std::getenv("ORVANE_FOR_WINDOWS");

// Runs `orvane` with the arguments, which the shell expands; if they contain "$ORVANE", runs them
// as a shell script instead.
Outcome run(const std::string& arguments, const std::string& token) {
    const std::string base = testing::TempDir() + "orvane-run-" + std::to_string(getpid());
    const bool isScript = arguments.find("$ORVANE") != std::string::npos;
    const std::string command = std::string("export ORVANE=") +
                                (programForWindows ? programForWindows : ORVANE_PROGRAM) + " ORVANE_TOKEN='" + token +
                                "'; ( " + (isScript ? arguments : "\"$ORVANE\" " + arguments) + "; ) >" + base +
                                ".out 2>" + base + ".err";
    const int status = std::system(command.c_str());
    return {WEXITSTATUS(status), takeFile(base + ".out"), takeFile(base + ".err")};
}

// An error must be one line, or as many as "errors" says, and the only output unless the row also
// has "prints".
void expectOutcome(const Outcome& outcome, const json& row) {
    EXPECT_EQ(outcome.exitStatus, row.at("status")) << outcome.error;
    EXPECT_EQ(firstMissingPart(outcome.output, row.value("prints", std::vector<std::string>())), "") << outcome.output;
    EXPECT_TRUE(!row.contains("isJSON") || json::accept(outcome.output)) << outcome.output;
    for (const std::string part : row.value("hides", json::array()))
        EXPECT_EQ((outcome.output + outcome.error).find(part), std::string::npos) << part;
    if (!row.contains("error")) {
        EXPECT_EQ(outcome.error, "");
        return;
    }
    EXPECT_TRUE(outcome.output.empty() || row.contains("prints")) << outcome.output;
    EXPECT_EQ(outcome.error.substr(0, 8), "orvane: ");
    EXPECT_EQ(std::count(outcome.error.begin(), outcome.error.end(), '\n'), row.value("errors", 1)) << outcome.error;
    EXPECT_NE(outcome.error.find(row["error"]), std::string::npos) << outcome.error;
}

TEST(OrvaneProgram, DoesWhatTheCasesSay) {
    // A minimal container may have no pseudo-terminals.
    const bool hasTerminals = std::system("script -qec true /dev/null >/dev/null 2>&1") == 0;
    if (!hasTerminals)
        std::cout << "left out, since there are no pseudo-terminals: the rows \"onTerminal\"\n";
    const Orvane::Testing::LocalService service(Orvane::Testing::PreparedAnswers::sample(), "right", 0);
    for (const json& row : casesOf("program.json", programForWindows ? "Windows" : "Linux")) {
        SCOPED_TRACE(row.at("shows"));
        if (row.contains("skipReason") || (row.contains("onTerminal") && !hasTerminals))
            continue;
        const RawServer server = Network::serve(row);
        std::string command = row.at("run");
        boost::replace_all(command, "{version}", "'urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7'");
        boost::replace_all(command, "{service}", service.baseUri());
        boost::replace_all(command, "{secure server}", "https" + server.url("").substr(4));
        boost::replace_all(command, "{server}", server.url(""));
        expectOutcome(run(command, row.value("token", "")), row);
        EXPECT_EQ(firstMissingPart(server.received(), row.value("receives", std::vector<std::string>())), "");
        EXPECT_TRUE(!row.contains("receives") || row["receives"].empty() == server.received().empty());
    }
}

TEST(OrvaneProgram, HidesItsMemoryFromTheUsersOtherPrograms) {
    const auto keepPrivate = [] {
        OrvaneHost::keepMemoryPrivate();
        _exit(prctl(PR_GET_DUMPABLE));
    };
    EXPECT_EXIT(keepPrivate(), testing::ExitedWithCode(0), "");
}

} // namespace
