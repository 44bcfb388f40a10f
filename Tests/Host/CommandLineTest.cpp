#include "Host/CommandLine.h"

#include <gtest/gtest.h>

namespace {

using OrvaneHost::CommandLine;
using Command = CommandLine::Command;

// Why there is nothing to run; "" if there is.
std::string parse(std::vector<const char*> arguments, CommandLine& commandLine) {
    arguments.insert(arguments.begin(), "orvane");
    const auto end = OrvaneHost::parseCommandLine(static_cast<int>(arguments.size()), arguments.data(), commandLine);
    return end ? end->output + end->error : "";
}

TEST(CommandLine, ReadsEachCommandWithItsOptions) {
    CommandLine folder;
    EXPECT_EQ(parse({"folder", "--query", "b=2", "u1", "--query", "a=1=x", "--query", "b=", "u2", "--json"}, folder),
              "");
    EXPECT_EQ(folder.command, Command::FOLDER);
    EXPECT_EQ(folder.urns, (std::vector<std::string>{"u1", "u2"}));
    EXPECT_EQ(folder.query, (std::list<std::pair<std::string, std::string>>{{"b", "2"}, {"a", "1=x"}, {"b", ""}}));
    EXPECT_TRUE(folder.json && !folder.async);

    CommandLine assembly;
    EXPECT_EQ(
        parse({"assembly", "u", "--workflow", "w", "--service", "s", "--v3-service", "v", "--timeout", "7"}, assembly),
        "");
    EXPECT_EQ(assembly.command, Command::ASSEMBLY);
    EXPECT_EQ(assembly.algorithm + assembly.workflow + assembly.service + assembly.v3Service, "ACTUALwsv");
    EXPECT_EQ(assembly.timeout, std::chrono::seconds(7));

    CommandLine access;
    EXPECT_EQ(parse({"access", "u", "--async"}, access), "");
    EXPECT_EQ(access.algorithm, "LATEST");
    EXPECT_EQ(parse({"access", "u", "--algorithm", "ACTUAL"}, access), "");
    EXPECT_EQ(access.algorithm, "ACTUAL");
}

TEST(CommandLine, SaysInOneLineWhatIsWrong) {
    for (const std::vector<const char*>& arguments : {std::vector<const char*>{},
                                                      {"fetch"},
                                                      {"folder"},
                                                      {"assembly", "a", "b"},
                                                      {"folder", "u", "--query", "x"},
                                                      {"folder", "u", "--query", "=x"},
                                                      {"folder", "u", "--timeout", "0"},
                                                      {"folder", "u", "--timeout", "soon"},
                                                      {"serve", "--port", "65536"},
                                                      {"access", "u", "--workflow", "w"},
                                                      {"folder", "u", "--token", "t"}}) {
        CommandLine ignored;
        const std::string error = parse(arguments, ignored);
        EXPECT_NE(error.find("; see orvane --help"), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    }
}

} // namespace
