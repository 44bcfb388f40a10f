#include "Host/CommandLine.h"

#include "Host/Version.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fmt/format.h>

namespace OrvaneHost {

namespace {

using Command = CommandLine::Command;

constexpr const char* exitStatuses = "Exit status: 0 on success; 1 if something failed, with a line on standard error "
                                     "that says what to do; 2 for an invalid command line.\n";

CLI::App* addCommand(CLI::App& app, CommandLine& commandLine, Command command, const char* name,
                     const char* description, const char* example) {
    CLI::App* added = app.add_subcommand(name, description);
    added->callback([&commandLine, command] { commandLine.command = command; });
    added->footer(std::string(exitStatuses) + "\nExample:\n  orvane " + name + " " + example);
    return added;
}

// An empty value usually comes from an unset variable; it must not be treated as an absent option.
std::string problemOfText(const std::string& text) {
    return text.empty() ? "must not be empty" : "";
}

// Returns what is obviously wrong with the base URL of a service, or ""; the HTTP client checks the
// rest.
std::string problemOfURL(const std::string& url) {
    for (const std::string scheme : {"https://", "http://"}) {
        if (!url.starts_with(scheme))
            continue;
        const std::string authority =
            url.substr(scheme.size(), url.find_first_of("/?#", scheme.size()) - scheme.size());
        const std::string host = authority.substr(authority.rfind('@') + 1);
        const std::string port = host.substr(std::min(host.find_last_of(":]"), host.size()));
        const bool isPort = port.size() < 2 || port[0] == ']' ||
                            (port.find_first_not_of("0123456789", 1) == std::string::npos && port.size() <= 6 &&
                             std::stoi(port.substr(1)) <= 65535);
        if (host.empty() || host.starts_with(':'))
            return "must be a URL with a host";
        return isPort ? "" : "must be a URL with a port up to 65535";
    }
    return "must be a URL that begins with https:// or http://";
}

void addTokenFile(CLI::App& command, CommandLine& commandLine, const char* description) {
    command.add_option("--token-file", commandLine.tokenFile, description)->check(problemOfText);
}

void addRequestOptions(CLI::App& command, CommandLine& commandLine) {
    command
        .add_option("--service", commandLine.service,
                    "Base URL of the service (default: the local service inside this program)")
        ->check(problemOfURL);
    command
        .add_option("--v3-service", commandLine.v3Service,
                    "Base URL of the V3 service (default: the base URL of the service, followed by \"/v3\")")
        ->needs("--service")
        ->check(problemOfURL);
    addTokenFile(command, commandLine,
                 "File that holds the bearer token (default: the environment variable ORVANE_TOKEN)");
    command
        .add_option("--timeout", commandLine.timeout,
                    "Time limit for each attempt at a request, in seconds (default: 120)")
        ->check(CLI::Range(1, 86400));
    command.add_option("--max-size", commandLine.maxSizeInMiB, "Maximum size of an answer, in MiB (default: 256)")
        ->check(CLI::Range(1, 4095));
    command
        .add_option("--record", commandLine.recordFolder,
                    "Folder in which to record each answer, for orvane serve --data and for tests")
        ->check(problemOfText);
    command.add_flag("--async", commandLine.async, "Send requests asynchronously, on the threads of the HTTP client");
    command.add_flag("--json", commandLine.json, "Print JSON, one line per URN");
    command.add_flag("--verbose", commandLine.verbose, "Print each attempt at a request to standard error");
    command.add_flag("--wide", commandLine.wide, "Print long texts in full instead of cutting them at 80 columns");
}

void addAlgorithm(CLI::App& command, CommandLine& commandLine, const char* defaultAlgorithm) {
    command.add_option(
        "--algorithm", commandLine.algorithm,
        std::string("How versions are chosen: ACTUAL, LATEST, or another algorithm of the service (default: ") +
            defaultAlgorithm + ")");
    command.preparse_callback(
        [&commandLine, defaultAlgorithm](std::size_t) { commandLine.algorithm = defaultAlgorithm; });
}

// Splits "key=value" at its first "=".
void addQueryPair(CommandLine& commandLine, const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw CLI::ValidationError("--query", "must be key=value, not \"" + text + "\"");
    commandLine.query.emplace_back(text.substr(0, equals), text.substr(equals + 1));
}

void addFolder(CLI::App& app, CommandLine& commandLine) {
    CLI::App* folder = addCommand(app, commandLine, Command::FOLDER, "folder", "List the contents of folders",
                                  "urn:vrnk.dorlqa:fs.folder:gearbox urn:vrnk.dorlqa:fs.folder:gears");
    folder->add_option("URN-OR-LINK", commandLine.urns, "URNs of folders, or links to their contents")
        ->required()
        ->check(problemOfText);
    folder
        ->add_option_function<std::vector<std::string>>(
            "--query",
            [&commandLine](const std::vector<std::string>& pairs) {
                for (const std::string& pair : pairs)
                    addQueryPair(commandLine, pair);
            },
            "key=value pair to add to the query; may be repeated, and the order is kept")
        ->take_all()
        ->expected(1, CLI::detail::expected_max_vector_size)
        ->allow_extra_args(false);
    addRequestOptions(*folder, commandLine);
}

void addAssembly(CLI::App& app, CommandLine& commandLine) {
    CLI::App* assembly =
        addCommand(app, commandLine, Command::ASSEMBLY, "assembly", "Fetch the full assembly of a file version",
                   "'urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7'");
    assembly->add_option("VERSION-URN", commandLine.urns, "URN of the file version")
        ->required()
        ->expected(1)
        ->check(problemOfText);
    assembly->add_option("--workflow", commandLine.workflow,
                         "Workflow to name in the usage event (default: \"command line\")");
    addAlgorithm(*assembly, commandLine, "ACTUAL");
    addRequestOptions(*assembly, commandLine);
    assembly
        ->add_option("--html", commandLine.htmlFile,
                     "Write the assembly as nested boxes to this HTML file instead of printing it")
        ->excludes("--json")
        ->check(problemOfText);
}

void addAccess(CLI::App& app, CommandLine& commandLine) {
    CLI::App* access =
        addCommand(app, commandLine, Command::ACCESS, "access", "Request access to the full assembly of a file version",
                   "'urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7'");
    access->add_option("VERSION-URN", commandLine.urns, "URN of the file version")
        ->required()
        ->expected(1)
        ->check(problemOfText);
    addAlgorithm(*access, commandLine, "LATEST");
    addRequestOptions(*access, commandLine);
}

void addServe(CLI::App& app, CommandLine& commandLine) {
    CLI::App* serve =
        addCommand(app, commandLine, Command::SERVE, "serve", "Run the local service until interrupted", "--port 8087");
    serve
        ->add_option(
            "--data", commandLine.dataFolder,
            "Folder of JSON files or recorded answers to serve, read once at startup (default: the sample project)")
        ->check(problemOfText);
    serve->add_option("--port", commandLine.port, "Port to listen on; 0 chooses a free one (default: 0)")
        ->check(CLI::Range(0, 65535));
    addTokenFile(*serve, commandLine,
                 "File that holds the bearer token to require (default: the environment variable "
                 "ORVANE_TOKEN, or else \"sample-token\")");
}

// Names the unexpected option without its value, which may be a token.
std::string unexpected(const CLI::App& app) {
    for (const std::string& argument : app.remaining(true))
        if (argument.starts_with('-'))
            return "unknown option " + argument.substr(0, argument.find('='));
    return "too many arguments";
}

std::string seeHelp(const CLI::App& app) {
    const auto chosen = app.get_subcommands();
    return fmt::format("; see orvane {}--help", chosen.empty() ? "" : chosen.front()->get_name() + ' ');
}

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

} // namespace

std::optional<EarlyEnd> parseCommandLine(const std::vector<std::string>& arguments, CommandLine& commandLine) {
    CLI::App app("Lists the contents of folders and fetches full assemblies from the Orvane design data service.",
                 "orvane");
    app.set_version_flag("--version", std::string("orvane ") + version);
    app.require_subcommand(1);
    app.allow_windows_style_options(false); // "/..." is a path on all systems.
    addFolder(app, commandLine);
    addAssembly(app, commandLine);
    addAccess(app, commandLine);
    addServe(app, commandLine);
    try {
        // The parser expects the arguments in reverse order.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForHelp&) {
        const auto chosen = app.get_subcommands();
        return EarlyEnd{chosen.empty() ? app.help() : chosen.front()->help("orvane"), ""};
    } catch (const CLI::CallForVersion& request) {
        return EarlyEnd{request.what() + std::string("\n"), ""};
    } catch (const CLI::ExtrasError&) {
        return EarlyEnd{"", unexpected(app) + seeHelp(app)};
    } catch (const CLI::ParseError& error) {
        const bool isUnknown =
            app.get_subcommands().empty() && !arguments.empty() && !arguments.front().starts_with('-');
        const std::string problem =
            isUnknown ? fmt::format("unknown command \"{}\"", arguments.front()) : firstLine(error.what());
        return EarlyEnd{"", problem + seeHelp(app)};
    }
    return std::nullopt;
}

} // namespace OrvaneHost
