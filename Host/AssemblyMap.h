#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Orvane::Payloads {
class FullAssemblyDataV3;
} // namespace Orvane::Payloads

namespace Qx {
class JSONNode;
} // namespace Qx

namespace OrvaneHost {

/// A full assembly as containers that hold files, with what hinders their user, and the references between the files.
struct AssemblyMap {
    /// What hinders a user, the worst last.
    enum class Obstacle { NONE, VIEWER_ONLY, OTHER_STATUS, UNKNOWN_PARENT, CLOSED, ARCHIVED, INACTIVE, DELETED };
    static constexpr std::size_t obstacleCount = 8;

    struct Container {
        enum class Kind { PROJECT, FOLDER, UNKNOWN };

        Kind kind = Kind::UNKNOWN;
        std::string id;
        std::string name; ///< The id where it has none.
        Obstacle obstacle = Obstacle::NONE;
        std::vector<std::size_t> containers; ///< Those in it, as places in `AssemblyMap::containers`, by their names.
        std::vector<std::size_t> files;      ///< Likewise.
    };

    struct File {
        std::string id;
        std::string name;
        bool isOwn = false;                  ///< Whether it is that of the version that was asked for.
        bool isDirect = false;               ///< Whether a relationship ties it to that version.
        Obstacle obstacle = Obstacle::NONE;  ///< The worst of all containers around it.
        std::vector<std::size_t> refersTo;   ///< Places in `AssemblyMap::files`, each once.
        std::vector<std::size_t> referredBy; ///< Likewise.
        std::size_t unknownReferences = 0;   ///< Those that lead to or come from no file of the assembly.
    };

    std::vector<Container> containers;
    std::vector<std::size_t> outermost;                   ///< The containers that are in no other.
    std::vector<File> files;                              ///< In the order of their ids.
    std::array<std::size_t, obstacleCount> filesBehind{}; ///< By obstacle.
    std::int32_t inaccessibleProjects = 0;                ///< The service says no more about these than their number.
    std::int32_t restrictedProjects = 0;                  ///< Likewise.
};

/// Takes time in proportion to the assembly, except for sorting. `root` is the root of the body that the assembly was
/// read from, which also tells to which file each version belongs.
AssemblyMap mapAssembly(const Orvane::Payloads::FullAssemblyDataV3& assembly, const Qx::JSONNode& root);

} // namespace OrvaneHost
