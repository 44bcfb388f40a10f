#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <cstdint>
#include <memory>
#include <string>

namespace Qx {

/// Tells the library about the cloud service that the application's user is signed in to.
class QXBASECORE10_EXPORT ICloudBrowser {
public:
    virtual ~ICloudBrowser();

    /// Returns the name of the current options set, for `ApplicationOptions::get`. May be called
    /// from any thread.
    virtual std::string currentOptionsName() const = 0;

    /// Returns the installed object, never null; by default, an object that returns the empty name.
    /// May be called from several threads at once, and concurrently with `install`.
    static std::shared_ptr<ICloudBrowser> get();

    /// Installs the application's own object and returns the previous one. Null restores the
    /// default.
    static std::shared_ptr<ICloudBrowser> install(std::shared_ptr<ICloudBrowser> browser);

    /// Installs an object that always returns `optionsName`, and returns the previous object.
    static std::shared_ptr<ICloudBrowser> installOptionsName(const std::string& optionsName);
};

namespace CloudBrowser::Relationship {

/// How two versions are related.
enum class RelationType : std::int32_t {
    OTHER = 0,      ///< Any other text, or none.
    DERIVED = 1,    ///< "DERIVED".
    DEPENDENCY = 2, ///< "DEPENDENCY".
    XREF = 3,       ///< "XREF".
    AUXILIARY = 4,  ///< "AUXILIARY".
};

} // namespace CloudBrowser::Relationship

} // namespace Qx
