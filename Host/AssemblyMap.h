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

/// A full assembly as nested containers of files, with the obstacles to opening them, and the
/// references between the files.
struct AssemblyMap {
    /// What prevents the user from opening a file freely; the worst last.
    enum class Obstacle { NONE, VIEWER_ONLY, OTHER_STATUS, UNKNOWN_PARENT, CLOSED, ARCHIVED, INACTIVE, DELETED };
    static constexpr std::size_t obstacleCount = 8;

    /// A project or folder, or a parent that the assembly does not contain.
    struct Container {
        enum class Kind { PROJECT, FOLDER, UNKNOWN };

        Kind kind = Kind::UNKNOWN;
        std::string id;
        std::string name; ///< Its id if it has no name.
        Obstacle obstacle = Obstacle::NONE;
        std::vector<std::size_t> containers; ///< Indices into `AssemblyMap::containers`, by name.
        std::vector<std::size_t> files;      ///< Indices into `AssemblyMap::files`, by name.
    };

    struct File {
        std::string id;
        std::string name;
        bool isOwn = false;                  ///< Whether this is the file of the requested version.
        bool isDirect = false;               ///< Whether a relationship connects it with that.
        Obstacle obstacle = Obstacle::NONE;  ///< The worst obstacle of all containers around it.
        std::vector<std::size_t> refersTo;   ///< Indices into `AssemblyMap::files`, each once.
        std::vector<std::size_t> referredBy; ///< Likewise.
        std::size_t unknownReferences = 0;   ///< Relationships with files outside the assembly.
    };

    std::vector<Container> containers;                        ///< All of the assembly's, even without files.
    std::vector<std::size_t> outermost;                       ///< The containers that are in no other.
    std::vector<File> files;                                  ///< In the order of their ids.
    std::array<std::size_t, obstacleCount> filesByObstacle{}; ///< How many files have each obstacle.
    std::size_t unknownReferences = 0;                        ///< Relationships with an end outside the assembly.
    std::int32_t inaccessibleProjects = 0;                    ///< The service sends only their number.
    std::int32_t restrictedProjects = 0;                      ///< Likewise.
};

/// Returns the map of an assembly, in linear time except for sorting. `root` is the root of the
/// body that the assembly was read from; it says to which file each version belongs.
AssemblyMap mapAssembly(const Orvane::Payloads::FullAssemblyDataV3& assembly, const Qx::JSONNode& root);

} // namespace OrvaneHost
