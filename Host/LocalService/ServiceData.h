#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <utility>

namespace OrvaneHost {

/// What the local service has to give: JSON texts, each for one URN at one of the service's addresses.
///
/// A text answers for the URN in its key "data.id", with status 200 or the one in its key "errors", an array
/// of objects with a key "status", of which the first counts. So a folder that may not be seen is a text like
/// any other.
class ServiceData {
public:
    enum class Address { FOLDER_CONTENTS, FULL_ASSEMBLY, FULL_ASSEMBLY_ACCESS };

    struct Answer {
        int status;
        std::string body;
    };

    /// The sample project that is built into the program.
    static ServiceData sample();

    /// Reads the files *.json in the folders "folders", "assemblies" and "access" of `folder`, as far as they
    /// are there. Throws `std::runtime_error` with a message of one line if there is no such file or one of
    /// them is no answer.
    static ServiceData fromFolder(const std::filesystem::path& folder);

    /// Throws `std::runtime_error` if `json` is not JSON or lacks "data.id". `origin` names it in the
    /// message.
    void add(Address address, const std::string& json, const std::string& origin);

    /// The answer for the URN, or status 404 with a JSON body that says what is missing.
    Answer find(Address address, const std::string& urn) const;

    /// A body such as the service sends with an error.
    static std::string errorBody(int status, const std::string& title, const std::string& detail);

private:
    std::map<std::pair<Address, std::string>, Answer> answers_;
};

} // namespace OrvaneHost
