#include "Host/Commands.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Base/QxBaseCore10/Uri.h"
#include "Host/AssemblyMap.h"
#include "Host/AssemblyPage.h"
#include "Host/AssemblyReport.h"
#include "Host/Console.h"
#include "Host/FailureText.h"
#include "Host/FileReplacement.h"
#include "Host/FolderReport.h"
#include "Host/Interrupts.h"
#include "Host/PathText.h"
#include "Host/ServiceConnection.h"
#include "Host/TokenFile.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <algorithm>
#include <fmt/format.h>
#include <new>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace OrvaneHost {

namespace {

using Orvane::FolderContentLink;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;
using Orvane::Testing::PreparedAnswers;

// The library puts a folder's URN into the URL unchanged, and these characters are special there.
std::string encodedURN(const std::string& urn) {
    return urn.find_first_of("?#%") == std::string::npos ? urn : Qx::Uri::UriEncode(urn);
}

FolderContentLink linkOf(const std::string& urnOrLink) {
    return FolderContentLink::isOrvaneFolderContentLink(urnOrLink) ? FolderContentLink::fromContentLink(urnOrLink)
                                                                   : FolderContentLink::fromUrn(encodedURN(urnOrLink));
}

int printFailure(const ServiceConnection& connection, const std::string& line) {
    printError(connection.withoutToken(line));
    return 1;
}

// An answer that could not be recorded is still worth printing, but the user must be told.
int finish(const ServiceConnection& connection, int exitStatus) {
    flushOutput();
    const std::string problem = connection.recordingProblem();
    if (problem.empty())
        return exitStatus;
    return printFailure(connection, fmt::format("some answers could not be recorded: {}; check --record", problem));
}

// Prints folders as their answers arrive. Only a few requests are in flight at a time, so that
// answers do not pile up if output is slow.
class FolderPrinter {
public:
    FolderPrinter(const CommandLine& commandLine, ServiceConnection& connection)
        : commandLine_(commandLine), connection_(connection), unanswered_(commandLine.urns.size()) {}

    int run() {
        constexpr std::size_t atOnce = 16;
        while (next_ < std::min(commandLine_.urns.size(), atOnce))
            requestNext();
        connection_.runCallbacks(unanswered_);
        return exitStatus_;
    }

private:
    void requestNext() {
        const std::string& urn = commandLine_.urns[next_++];
        connection_.orvanedm().getFolderContents(
            linkOf(urn), commandLine_.query,
            [this, &urn](bool success, const Qx::JSONNode& contents) { finishOne(urn, success, contents); });
    }

    void finishOne(const std::string& urn, bool success, const Qx::JSONNode& contents) {
        if (!success)
            exitStatus_ = printFailure(connection_, explainFailure(connection_.response(), urn, commandLine_));
        else if (!holdsFolder(urn, contents, connection_.response().getBody()))
            exitStatus_ = printFailure(connection_, explainUnexpectedAnswer(connection_.response(), urn, "contents"));
        else
            print(urn, contents);
        flushOutput();
        --unanswered_;
        if (next_ < commandLine_.urns.size())
            requestNext();
    }

    void print(const std::string& urn, const Qx::JSONNode& contents) {
        if (commandLine_.json) {
            printOutput(folderJSON(urn, contents));
            return;
        }
        printOutput(std::exchange(separator_, "\n"));
        printFolder(urn, contents, commandLine_.wide);
    }

    const CommandLine& commandLine_;
    ServiceConnection& connection_;
    std::size_t next_ = 0;
    std::size_t unanswered_;
    int exitStatus_ = 0;
    const char* separator_ = "";
};

int runFolder(const CommandLine& commandLine) {
    ServiceConnection connection(commandLine);
    const int exitStatus = FolderPrinter(commandLine, connection).run();
    return finish(connection, exitStatus);
}

// The library reports success for any JSON; this checks that it is the requested assembly.
template <class Print>
int printAnswer(const CommandLine& commandLine, ServiceConnection& connection, bool success,
                const FullAssemblyData* assembly, Print print) {
    const std::string& urn = commandLine.urns.front();
    if (!success)
        return finish(connection, printFailure(connection, explainFailure(connection.response(), urn, commandLine)));
    if (!assembly || assembly->getId() != urn)
        return finish(connection,
                      printFailure(connection, explainUnexpectedAnswer(connection.response(), urn, "assembly")));
    print();
    return finish(connection, 0);
}

void printReport(const CommandLine& commandLine, const Report& report) {
    if (commandLine.json)
        printOutput(toJSON(report));
    else
        printText(report, commandLine.wide);
}

void writePage(const std::string& file, const std::string& page) {
    try {
        replaceFile(pathOf(file), page);
    } catch (const std::system_error& error) {
        throw std::runtime_error(
            fmt::format("can't write the page to {}: {}; check --html", file, error.code().message()));
    }
}

void printAssembly(const CommandLine& commandLine, const ServiceConnection& connection,
                   const FullAssemblyDataV3& assembly) {
    const Report report = reportAssembly(assembly, connection.events());
    if (commandLine.htmlFile.empty()) {
        printReport(commandLine, report);
        return;
    }
    Qx::Status status;
    const auto root = Qx::JSONNode::parse(connection.response().getBody(), status, Qx::HTTPResponse::padding);
    if (!root) // It was JSON when the assembly was read from it.
        throw std::bad_alloc();
    writePage(commandLine.htmlFile, toHTML(mapAssembly(assembly, *root), report));
}

int runAssembly(const CommandLine& commandLine) {
    ServiceConnection connection(commandLine);
    std::size_t unanswered = 1;
    bool hasSucceeded = false;
    std::shared_ptr<FullAssemblyDataV3> assembly;
    connection.orvanedm().getFullAssemblyStatus(
        commandLine.urns.front(),
        [&](bool success, const std::shared_ptr<FullAssemblyData>& data) {
            --unanswered;
            hasSucceeded = success;
            assembly = std::dynamic_pointer_cast<FullAssemblyDataV3>(data);
        },
        commandLine.algorithm, Qx::ToIString(commandLine.workflow));
    connection.runCallbacks(unanswered);
    return printAnswer(commandLine, connection, hasSucceeded, assembly.get(),
                       [&] { printAssembly(commandLine, connection, *assembly); });
}

int runAccess(const CommandLine& commandLine) {
    ServiceConnection connection(commandLine);
    std::size_t unanswered = 1;
    bool hasSucceeded = false;
    FullAssemblyData assembly;
    connection.orvanedm().requestFullAssemblyAccess(
        commandLine.urns.front(),
        [&](bool success, const FullAssemblyData& data) {
            --unanswered;
            hasSucceeded = success;
            assembly = data;
        },
        commandLine.algorithm);
    connection.runCallbacks(unanswered);
    return printAnswer(commandLine, connection, hasSucceeded, &assembly,
                       [&] { printReport(commandLine, reportAccess(assembly)); });
}

PreparedAnswers answersFor(const CommandLine& commandLine) {
    return commandLine.dataFolder.empty() ? PreparedAnswers::sample()
                                          : PreparedAnswers::fromFolder(pathOf(commandLine.dataFolder));
}

int runServe(const CommandLine& commandLine) {
    const std::string ownToken = readToken(commandLine.tokenFile, commandLine.timeout);
    PreparedAnswers answers = answersFor(commandLine);

    holdInterrupts();
    const Orvane::Testing::LocalService service(std::move(answers), ownToken.empty() ? sampleToken : ownToken,
                                                commandLine.port);
    printOutput(fmt::format("Serving at {}\nThe bearer token is {}. Interrupt to stop.\n", service.baseUri(),
                            ownToken.empty() ? fmt::format("\"{}\"", sampleToken) : "the one that you provided"));
    flushOutput();
    waitForInterrupt();
    return 0;
}

} // namespace

int runCommand(const CommandLine& commandLine) {
    switch (commandLine.command) {
    case CommandLine::Command::FOLDER:
        return runFolder(commandLine);
    case CommandLine::Command::ASSEMBLY:
        return runAssembly(commandLine);
    case CommandLine::Command::ACCESS:
        return runAccess(commandLine);
    case CommandLine::Command::SERVE:
        return runServe(commandLine);
    }
    return 2;
}

} // namespace OrvaneHost
