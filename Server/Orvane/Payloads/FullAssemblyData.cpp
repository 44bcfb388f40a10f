#include "Server/Orvane/Payloads/FullAssemblyData.h"

#include "Server/Orvane/Payloads/Detail/JSONReading.h"
#include "Server/Orvane/Payloads/Detail/Texts.h"

#include <utility>

namespace Orvane::Payloads {

FullAssemblyData::FullAssemblyData() = default;

FullAssemblyData::FullAssemblyData(const Qx::JSONNode& root) {
    if (const auto data = child(root, "data"))
        readData(*data);
    if (const auto included = child(root, "included"))
        readIncluded(*included);
}

void FullAssemblyData::readData(const Qx::JSONNode& data) {
    Data::init(data);
    if (const auto links = child(data, "links"))
        Links::init(*links);
    read(data, "inaccessibleProjects", inaccessibleParents_);
    read(data, "restrictedProjects", restrictedParents_);
}

void FullAssemblyData::readIncluded(const Qx::JSONNode& included) {
    forEachElement(included, "projects", [this](const Qx::JSONNode& element) {
        ProjectData project(element);
        if (project.getType() == Texts::projects)
            projects_.push_back(std::move(project));
    });
    forEachElement(included, "files", [this](const Qx::JSONNode& element) {
        FilesData file(element);
        if (file.getType() == Texts::files)
            files_.try_emplace(file.getId(), std::move(file));
    });
}

FullAssemblyData::FullAssemblyData(const FullAssemblyData& other) = default;

FullAssemblyData& FullAssemblyData::operator=(const FullAssemblyData& other) = default;

FullAssemblyData::~FullAssemblyData() = default;

} // namespace Orvane::Payloads
