#include "Host/CommandLine.h"

#include "Host/Version.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fmt/format.h>

namespace OrvaneHost {

namespace {

using Command = CommandLine::Command;

constexpr const char* exitStatuses = "Exit status: 0 if all went well, 1 if something failed, with a line on standard "
                                     "error that says what to do, 2 for a "
                                     "wrong command line.\n";

CLI::App* addCommand(CLI::App& app, CommandLine& commandLine, Command command, const char* name,
                     const char* description, const char* example) {
    CLI::App* added = app.add_subcommand(name, description);
    added->callback([&commandLine, command] { commandLine.command = command; });
    added->footer(std::string(exitStatuses) + "\nExample:\n  orvane " + name + " " + example);
    return added;
}

// An empty text is an unset variable as a rule, and not to be taken for an option that is not there.
std::string problemOfText(const std::string& text) {
    return text.empty() ? "may not be empty" : "";
}

// What is wrong with the base URL of a service before anybody looks closer.
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
            return "takes a URL with a host";
        return isPort ? "" : "takes a URL with a port up to 65535";
    }
    return "takes a URL that begins with https:// or http://";
}

void addTokenFile(CLI::App& command, CommandLine& commandLine, const char* description) {
    command.add_option("--token-file", commandLine.tokenFile, description)->check(problemOfText);
}

void addRequestOptions(CLI::App& command, CommandLine& commandLine) {
    command
        .add_option("--service", commandLine.service,
                    "Base URL of the service; without it the local service inside this program")
        ->check(problemOfURL);
    command
        .add_option("--v3-service", commandLine.v3Service,
                    "Base URL of the V3 service; without it that of the service with \"/v3\" after it")
        ->needs("--service")
        ->check(problemOfURL);
    addTokenFile(command, commandLine,
                 "File that holds the bearer token; without it the environment variable ORVANE_TOKEN");
    command.add_option("--timeout", commandLine.timeout, "Seconds that each attempt at a request may take (120)")
        ->check(CLI::Range(1, 86400));
    command.add_option("--max-size", commandLine.maxSizeInMiB, "MiB that one answer may have (256)")
        ->check(CLI::Range(1, 4095));
    command
        .add_option("--record", commandLine.recordFolder,
                    "Folder in which to keep each answer, for orvane serve --data and for tests")
        ->check(problemOfText);
    command.add_flag("--async", commandLine.async, "Have requests answered on a thread of the HTTP client");
    command.add_flag("--json", commandLine.json, "Print JSON, one line for each URN");
    command.add_flag("--verbose", commandLine.verbose, "Print each attempt at a request to standard error");
    command.add_flag("--wide", commandLine.wide, "Show texts whole in tables, not the first 80 columns");
}

void addAlgorithm(CLI::App& command, CommandLine& commandLine, const char* defaultAlgorithm) {
    command.add_option("--algorithm", commandLine.algorithm,
                       std::string("Which versions count: ACTUAL, LATEST, or another that the service knows (") +
                           defaultAlgorithm + ")");
    command.preparse_callback(
        [&commandLine, defaultAlgorithm](std::size_t) { commandLine.algorithm = defaultAlgorithm; });
}

// Splits "key=value" at its first "=".
void addQueryPair(CommandLine& commandLine, const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw CLI::ValidationError("--query", "takes key=value, not \"" + text + "\"");
    commandLine.query.emplace_back(text.substr(0, equals), text.substr(equals + 1));
}

void addFolder(CLI::App& app, CommandLine& commandLine) {
    CLI::App* folder = addCommand(app, commandLine, Command::FOLDER, "folder", "List the contents of folders",
                                  "urn:vrnk.dorlqa:fs.folder:gearbox urn:vrnk.dorlqa:fs.folder:gears");
    folder->add_option("URN-OR-LINK", commandLine.urns, "Folders, by URN or by link to their contents")
        ->required()
        ->check(problemOfText);
    folder
        ->add_option_function<std::vector<std::string>>(
            "--query",
            [&commandLine](const std::vector<std::string>& pairs) {
                for (const std::string& pair : pairs)
                    addQueryPair(commandLine, pair);
            },
            "A pair key=value for the query; may be repeated, the order is kept")
        ->take_all()
        ->expected(1, CLI::detail::expected_max_vector_size)
        ->allow_extra_args(false);
    addRequestOptions(*folder, commandLine);
}

void addAssembly(CLI::App& app, CommandLine& commandLine) {
    CLI::App* assembly =
        addCommand(app, commandLine, Command::ASSEMBLY, "assembly", "Fetch the full assembly of a file version",
                   "'urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7'");
    assembly->add_option("VERSION-URN", commandLine.urns, "The version")->required()->expected(1)->check(problemOfText);
    assembly->add_option("--workflow", commandLine.workflow, "What the usage event is to name as workflow");
    addAlgorithm(*assembly, commandLine, "ACTUAL");
    addRequestOptions(*assembly, commandLine);
    assembly
        ->add_option("--html", commandLine.htmlFile,
                     "File to write a page to that shows the assembly as boxes, instead of printing it")
        ->excludes("--json")
        ->check(problemOfText);
}

void addAccess(CLI::App& app, CommandLine& commandLine) {
    CLI::App* access =
        addCommand(app, commandLine, Command::ACCESS, "access", "Ask for access to the full assembly of a file version",
                   "'urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7'");
    access->add_option("VERSION-URN", commandLine.urns, "The version")->required()->expected(1)->check(problemOfText);
    addAlgorithm(*access, commandLine, "LATEST");
    addRequestOptions(*access, commandLine);
}

void addServe(CLI::App& app, CommandLine& commandLine) {
    CLI::App* serve = addCommand(app, commandLine, Command::SERVE, "serve",
                                 "Run the local service until it is interrupted", "--port 8087");
    serve
        ->add_option(
            "--data", commandLine.dataFolder,
            "Folder with JSON files, or with recorded answers, to serve, read once at the start; without it the "
            "sample project")
        ->check(problemOfText);
    serve->add_option("--port", commandLine.port, "Port to listen on; 0 for any free one (0)")
        ->check(CLI::Range(0, 65535));
    addTokenFile(*serve, commandLine,
                 "File that holds the token to ask for; without it the environment variable ORVANE_TOKEN");
}

// Names what nobody expected without its value, which may be a token.
std::string unexpected(const CLI::App& app) {
    for (const std::string& argument : app.remaining(true))
        if (argument.starts_with('-'))
            return "there is no option " + argument.substr(0, argument.find('=')) + " here";
    return "there are more arguments than expected";
}

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

} // namespace

std::optional<EarlyEnd> parseCommandLine(const std::vector<std::string>& arguments, CommandLine& commandLine) {
    CLI::App app("Talks to the Orvane design data service.", "orvane");
    app.set_version_flag("--version", std::string("orvane ") + version);
    app.require_subcommand(1);
    app.allow_windows_style_options(false); // What begins with "/" is a path on all systems.
    addFolder(app, commandLine);
    addAssembly(app, commandLine);
    addAccess(app, commandLine);
    addServe(app, commandLine);
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend())); // As the parser wants them.
    } catch (const CLI::CallForHelp&) {
        const auto chosen = app.get_subcommands();
        return EarlyEnd{chosen.empty() ? app.help() : chosen.front()->help("orvane"), ""};
    } catch (const CLI::CallForVersion& request) {
        return EarlyEnd{request.what() + std::string("\n"), ""};
    } catch (const CLI::ExtrasError&) {
        return EarlyEnd{"", unexpected(app) + "; see orvane --help"};
    } catch (const CLI::ParseError& error) {
        const bool isUnknown =
            app.get_subcommands().empty() && !arguments.empty() && !arguments.front().starts_with('-');
        const std::string problem =
            isUnknown ? fmt::format("there is no command \"{}\"", arguments.front()) : firstLine(error.what());
        return EarlyEnd{"", problem + "; see orvane --help"};
    }
    return std::nullopt;
}

} // namespace OrvaneHost
