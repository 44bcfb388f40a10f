#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <cstdint>
#include <memory>
#include <string>

namespace Qx {

/// What the application says of the cloud service that its user is signed in to.
class QXBASECORE10_EXPORT ICloudBrowser {
public:
    virtual ~ICloudBrowser();

    /// The name of the options set in use, to be handed to `ApplicationOptions::get`. Called from any thread.
    virtual std::string currentOptionsName() const = 0;

    /// The installed object, never null: at first one whose options set has the empty name. May be called
    /// from several threads at once, also beside `install`.
    static std::shared_ptr<ICloudBrowser> get();

    /// Installs the host's own object and gives the one before it. Null installs the first one again.
    static std::shared_ptr<ICloudBrowser> install(std::shared_ptr<ICloudBrowser> browser);

    /// Installs an object whose options set has this name and gives the one before it.
    static std::shared_ptr<ICloudBrowser> installOptionsName(const std::string& optionsName);
};

namespace CloudBrowser::Relationship {

/// What ties two versions together.
enum class RelationType : std::int32_t { OTHER = 0, DERIVED = 1, DEPENDENCY = 2, XREF = 3, AUXILIARY = 4 };

} // namespace CloudBrowser::Relationship

} // namespace Qx
