#include "Host/Commands.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Host/AssemblyReport.h"
#include "Host/Console.h"
#include "Host/FailureText.h"
#include "Host/FolderReport.h"
#include "Host/ServiceConnection.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <csignal>
#include <fmt/format.h>

namespace OrvaneHost {

namespace {

using Orvane::FolderContentLink;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;

// What the library told of one request.
template <class Data>
struct Outcome {
    bool success = false;
    Data data;
};

FolderContentLink linkOf(const std::string& urnOrLink) {
    return FolderContentLink::isOrvaneFolderContentLink(urnOrLink) ? FolderContentLink::fromContentLink(urnOrLink)
                                                                   : FolderContentLink::fromUrn(urnOrLink);
}

int printReport(const CommandLine& commandLine, const Report& report) {
    printOutput(commandLine.json ? toJSON(report) : toText(report));
    return 0;
}

int printFailure(const Qx::HTTPResponse& response, const std::string& urn, const CommandLine& commandLine) {
    printError(explainFailure(response, urn, commandLine));
    return 1;
}

using Listing = Outcome<Qx::JSONNode>;

Qx::Orvanedm::FolderContentsCallback keepIn(Listing& listing) {
    return [&listing](bool success, const Qx::JSONNode& contents) { listing = {success, contents}; };
}

// Several folders go out as one batch.
void requestBatch(Qx::Orvanedm& orvanedm, const CommandLine& commandLine, std::vector<Listing>& listings) {
    std::vector<Qx::HTTPRequest> requests;
    for (std::size_t i = 0; i < listings.size(); ++i) {
        requests.emplace_back(BOOST_CURRENT_LOCATION);
        orvanedm.buildOrvaneFolderContentsRequest(linkOf(commandLine.urns[i]), commandLine.query, keepIn(listings[i]),
                                                  requests.back());
    }
    orvanedm.getFolderContents(std::move(requests), [](const std::vector<Qx::HTTPResponse>&) {});
}

// A report is worth printing though it could not be recorded, but the user has to know.
int finish(const ServiceConnection& connection, int exitStatus) {
    const std::string problem = connection.recordingProblem();
    if (problem.empty())
        return exitStatus;
    printError(fmt::format("not all could be recorded: {}; check --record", problem));
    return 1;
}

int runFolder(const CommandLine& commandLine) {
    std::vector<Listing> listings(commandLine.urns.size());
    ServiceConnection connection(commandLine);
    if (listings.size() == 1)
        connection.orvanedm().getFolderContents(linkOf(commandLine.urns.front()), commandLine.query,
                                                keepIn(listings.front()));
    else
        requestBatch(connection.orvanedm(), commandLine, listings);
    const std::vector<Qx::HTTPResponse> responses = connection.waitForResponses();

    int exitStatus = 0;
    const char* separator = "";
    for (std::size_t i = 0; i < listings.size(); ++i) {
        const std::string& urn = commandLine.urns[i];
        const auto& [success, contents] = listings[i];
        if (!success) {
            exitStatus = printFailure(responses[i], urn, commandLine);
        } else if (commandLine.json) {
            printOutput(folderJSON(urn, contents));
        } else {
            printOutput(fmt::format("{}{}", separator, folderText(urn, contents)));
            separator = "\n";
        }
    }
    return finish(connection, exitStatus);
}

int runAssembly(const CommandLine& commandLine) {
    const std::string& urn = commandLine.urns.front();
    Outcome<std::shared_ptr<FullAssemblyData>> outcome;
    ServiceConnection connection(commandLine);
    connection.orvanedm().getFullAssemblyStatus(
        urn,
        [&outcome](bool success, const std::shared_ptr<FullAssemblyData>& data) {
            outcome = {success, data};
        },
        commandLine.algorithm, Qx::ToIString(commandLine.workflow));
    const std::vector<Qx::HTTPResponse> responses = connection.waitForResponses();
    const auto assembly = std::dynamic_pointer_cast<FullAssemblyDataV3>(outcome.data);
    return finish(connection, outcome.success && assembly
                                  ? printReport(commandLine, reportAssembly(*assembly, connection.events()))
                                  : printFailure(responses.front(), urn, commandLine));
}

int runAccess(const CommandLine& commandLine) {
    const std::string& urn = commandLine.urns.front();
    Outcome<FullAssemblyData> outcome;
    ServiceConnection connection(commandLine);
    connection.orvanedm().requestFullAssemblyAccess(
        urn,
        [&outcome](bool success, const FullAssemblyData& data) {
            outcome = {success, data};
        },
        commandLine.algorithm);
    const std::vector<Qx::HTTPResponse> responses = connection.waitForResponses();
    return finish(connection, outcome.success ? printReport(commandLine, reportAccess(outcome.data))
                                              : printFailure(responses.front(), urn, commandLine));
}

int runServe(const CommandLine& commandLine) {
    // Blocked before the service starts its threads, so that none of them takes the signal.
    sigset_t interrupts;
    sigemptyset(&interrupts);
    sigaddset(&interrupts, SIGINT);
    sigaddset(&interrupts, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &interrupts, nullptr);

    const std::string ownToken = readToken(commandLine.tokenFile);
    using Orvane::Testing::PreparedAnswers;
    const Orvane::Testing::LocalService service(commandLine.dataFolder.empty()
                                                    ? PreparedAnswers::sample()
                                                    : PreparedAnswers::fromFolder(commandLine.dataFolder),
                                                ownToken.empty() ? sampleToken : ownToken, commandLine.port);
    printOutput(fmt::format("Serving at {}\nThe bearer token is {}. Interrupt to stop.\n", service.baseUri(),
                            ownToken.empty() ? fmt::format("\"{}\"", sampleToken) : "yours"));
    int received = 0;
    sigwait(&interrupts, &received);
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
