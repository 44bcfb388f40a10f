#include "Host/AssemblyMap.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"
#include "Server/Orvane/Payloads/VersionData.h"

#include <algorithm>
#include <map>
#include <memory>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace OrvaneHost {

namespace {

using namespace Orvane::Payloads;
using Container = AssemblyMap::Container;
using File = AssemblyMap::File;
using Obstacle = AssemblyMap::Obstacle;
using Places = std::unordered_map<std::string, std::size_t>;

Obstacle obstacleOf(ContainerStatus status, bool isClosed, bool isViewer) {
    switch (status) {
    case ContainerStatus::ACTIVE:
        return isClosed ? Obstacle::CLOSED : isViewer ? Obstacle::VIEWER_ONLY : Obstacle::NONE;
    case ContainerStatus::ARCHIVED:
        return Obstacle::ARCHIVED;
    case ContainerStatus::INACTIVE:
        return Obstacle::INACTIVE;
    case ContainerStatus::DELETED:
        return Obstacle::DELETED;
    case ContainerStatus::OTHER:
    case ContainerStatus::UNSET:
        break;
    }
    return Obstacle::OTHER_STATUS;
}

class MapMaker {
public:
    MapMaker(const FullAssemblyDataV3& assembly, const Qx::JSONNode& root) : assembly_(assembly) {
        const Qx::JSONNode included(root["included"]);
        addContainers(included);
        addFiles();
        addReferences(included);
        nest();
        sortByName();
        map_.inaccessibleProjects = assembly.getInaccessibleParents();
        map_.restrictedProjects = assembly.getRestrictedParents();
    }

    AssemblyMap take() { return std::move(map_); }

private:
    // All projects with the same id; usually there is just one.
    struct Project {
        ProjectData data;                   // Of the first of them.
        Obstacle obstacle = Obstacle::NONE; // The worst of them.
    };

    void addContainers(const Qx::JSONNode& included) {
        for (const Qx::JSONRef element : Qx::JSONNode(included["projects"])) {
            const ProjectData data{Qx::JSONNode(element)};
            if (data.getType() != ProjectData::dataType())
                continue;
            Project& project = projects_.try_emplace(data.getId(), Project{data}).first->second;
            project.obstacle =
                std::max(project.obstacle, obstacleOf(data.getStatus(), !data.IsMember(), data.IsViewerRole()));
        }
        for (const auto& [id, project] : projects_)
            containerOf(id);
        for (const Qx::JSONRef element : Qx::JSONNode(included["folders"]))
            if (const std::string id = Qx::JSONNode(element)["id"].asHString(""); assembly_.getFolder(id))
                containerOf(id);
    }

    void addFiles() {
        const auto direct = assembly_.getDirectReferencedFiles();
        for (const auto& [id, name] : sortedFiles()) {
            fileOf_[id] = map_.files.size();
            File& file = map_.files.emplace_back();
            file.id = id;
            file.name = name.empty() ? id : name;
            file.isDirect = direct.contains(id);
            const FilesData* const data = assembly_.getFileById(id);
            const std::size_t container = containerOf(data ? data->getParentId() : std::string());
            map_.containers[container].files.push_back(map_.files.size() - 1);
        }
    }

    std::map<std::string, std::string> sortedFiles() const {
        std::map<std::string, std::string> files;
        for (const auto& [id, name] : assembly_.getAllReferencedFiles())
            files.emplace(id, Qx::ToHString(name));
        return files;
    }

    // Returns the index of the container with that id. Adds it, and the containers around it, on
    // first use.
    std::size_t containerOf(const std::string& id) {
        std::string next = id;
        while (containerOf_.try_emplace(next, map_.containers.size()).second) {
            parents_.push_back(addContainer(next));
            if (parents_.back().empty())
                break;
            next = parents_.back();
        }
        return containerOf_.at(id);
    }

    bool isKnown(const std::string& id) const { return projects_.contains(id) || assembly_.getFolder(id); }

    // Adds the container with that id. Returns the id of its parent; empty if the assembly does not
    // contain the parent. A folder takes precedence over a project with the same id, except that the
    // obstacles of both count.
    std::string addContainer(const std::string& id) {
        Container& container = map_.containers.emplace_back();
        container.id = id;
        const std::shared_ptr<FolderData> folder = assembly_.getFolder(id);
        const auto project = projects_.find(id);
        if (project != projects_.end())
            container.obstacle = project->second.obstacle;
        std::string name = id.empty() ? "(no parent)" : id;
        std::string parent;
        if (folder) {
            container.kind = Container::Kind::FOLDER;
            container.obstacle =
                std::max(container.obstacle, obstacleOf(folder->status(), !folder->hasPermission("read"), false));
            name = folder->name();
            parent = folder->parent();
        } else if (project != projects_.end()) {
            container.kind = Container::Kind::PROJECT;
            name = Qx::ToHString(project->second.data.getName());
            parent = project->second.data.getParent();
        } else {
            container.obstacle = Obstacle::UNKNOWN_PARENT;
        }
        container.name = name.empty() ? id : name;
        return parent != id && isKnown(parent) ? parent : std::string();
    }

    void addReferences(const Qx::JSONNode& included) {
        std::unordered_map<std::string, std::string> fileOfVersion;
        for (const Qx::JSONRef element : Qx::JSONNode(included["versions"])) {
            const VersionData version{Qx::JSONNode(element)};
            fileOfVersion.insert_or_assign(version.getId(), version.getFileId());
        }
        const auto fileOf = [&](const std::string& version) -> File* {
            const auto id = fileOfVersion.find(version);
            const auto place = id == fileOfVersion.end() ? fileOf_.end() : fileOf_.find(id->second);
            return place == fileOf_.end() ? nullptr : &map_.files[place->second];
        };
        if (File* const own = fileOf(assembly_.getId()))
            own->isOwn = true;
        for (const auto& relationship : assembly_.getAllRelationships())
            connect(fileOf(relationship->fromUrn()), fileOf(relationship->toUrn()));
        for (File& file : map_.files) {
            keepOnce(file.refersTo);
            keepOnce(file.referredBy);
        }
    }

    void connect(File* from, File* to) {
        if (from && to) {
            from->refersTo.push_back(placeOf(*to));
            to->referredBy.push_back(placeOf(*from));
            return;
        }
        ++map_.unknownReferences;
        if (File* const known = from ? from : to)
            ++known->unknownReferences;
    }

    std::size_t placeOf(const File& file) const { return static_cast<std::size_t>(&file - map_.files.data()); }

    static void keepOnce(std::vector<std::size_t>& places) {
        std::sort(places.begin(), places.end());
        places.erase(std::unique(places.begin(), places.end()), places.end());
    }

    // Nests containers in their parents. If the service says that folders contain each other in a
    // cycle, one of them becomes an outermost container, and the obstacles of all of them count.
    void nest() {
        std::vector<std::vector<std::size_t>> inner(map_.containers.size());
        for (std::size_t place = 0; place < parents_.size(); ++place)
            if (!parents_[place].empty())
                inner[parentOf(place)].push_back(place);
        std::vector<bool> isNested(map_.containers.size());
        for (std::size_t place = 0; place < parents_.size(); ++place)
            if (parents_[place].empty())
                nestFrom(place, Obstacle::NONE, inner, isNested);
        for (std::size_t place = 0; place < parents_.size(); ++place)
            if (!isNested[place]) {
                const std::size_t inCycle = cycleFrom(place);
                nestFrom(inCycle, worstInCycle(inCycle), inner, isNested);
            }
    }

    std::size_t parentOf(std::size_t place) const { return containerOf_.at(parents_[place]); }

    // Follows the parents of a container, which never end, to one that contains itself.
    std::size_t cycleFrom(std::size_t place) const {
        std::unordered_set<std::size_t> seen;
        while (seen.insert(place).second)
            place = parentOf(place);
        return place;
    }

    Obstacle worstInCycle(std::size_t start) const {
        Obstacle worst = map_.containers[start].obstacle;
        for (std::size_t place = parentOf(start); place != start; place = parentOf(place))
            worst = std::max(worst, map_.containers[place].obstacle);
        return worst;
    }

    // Without recursion, since the service determines how deeply folders are nested.
    void nestFrom(std::size_t outermost, Obstacle outside, const std::vector<std::vector<std::size_t>>& inner,
                  std::vector<bool>& isNested) {
        map_.outermost.push_back(outermost);
        isNested[outermost] = true;
        std::vector<std::pair<std::size_t, Obstacle>> open{{outermost, outside}};
        while (!open.empty()) {
            const auto [place, around] = open.back();
            open.pop_back();
            Container& container = map_.containers[place];
            const Obstacle worst = std::max(around, container.obstacle);
            for (const std::size_t file : container.files) {
                map_.files[file].obstacle = worst;
                ++map_.filesByObstacle.at(static_cast<std::size_t>(worst));
            }
            for (const std::size_t candidate : inner[place]) {
                if (isNested[candidate])
                    continue;
                isNested[candidate] = true;
                container.containers.push_back(candidate);
                open.emplace_back(candidate, worst);
            }
        }
    }

    void sortByName() {
        const auto byName = [](const auto& named) {
            return [&named](std::size_t left, std::size_t right) {
                return std::tie(named[left].name, named[left].id) < std::tie(named[right].name, named[right].id);
            };
        };
        for (Container& container : map_.containers) {
            std::sort(container.files.begin(), container.files.end(), byName(map_.files));
            std::sort(container.containers.begin(), container.containers.end(), byName(map_.containers));
        }
        std::sort(map_.outermost.begin(), map_.outermost.end(), byName(map_.containers));
    }

    const FullAssemblyDataV3& assembly_;
    std::unordered_map<std::string, Project> projects_;
    AssemblyMap map_;
    Places fileOf_;
    Places containerOf_;
    std::vector<std::string> parents_; // The id of each container's parent; empty if it has none.
};

} // namespace

AssemblyMap mapAssembly(const FullAssemblyDataV3& assembly, const Qx::JSONNode& root) {
    return MapMaker(assembly, root).take();
}

} // namespace OrvaneHost
