#include "Host/AssemblyPage.h"

#include "Host/HTMLTree.h"
#include "Host/Page/Page.h"
#include "Host/Printable.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <random>
#include <string_view>
#include <utility>

namespace OrvaneHost {

namespace {

using pugi::xml_node;
using Container = AssemblyMap::Container;
using File = AssemblyMap::File;
using Obstacle = AssemblyMap::Obstacle;

struct ObstacleText {
    const char* className;
    const char* sign;
    const char* label;
};

// In the order of the obstacles.
constexpr std::array<ObstacleText, AssemblyMap::obstacleCount> obstacleTexts{{
    {"none", "\u2713", "open to you"},
    {"viewer-only", "\u25D1", "view only"},
    {"other-status", "\u2026", "unknown status"},
    {"unknown-parent", "?", "unknown parent"},
    {"closed", "\u2298", "closed to you"},
    {"archived", "\u25A4", "archived"},
    {"inactive", "\u2016", "inactive"},
    {"deleted", "\u2715", "deleted"},
}};

const ObstacleText& textOf(Obstacle obstacle) {
    return obstacleTexts.at(static_cast<std::size_t>(obstacle));
}

std::string shown(const std::string& text) {
    constexpr std::size_t width = 100;
    return shortened(text, width);
}

// The author of a name can't know the nonce, so a script smuggled into a name does not run.
std::string randomNonce() {
    std::random_device random;
    std::string nonce;
    for (int word = 0; word < 4; ++word)
        nonce += fmt::format("{:08x}", random());
    return nonce;
}

class PageWriter {
public:
    PageWriter(const AssemblyMap& map, const Report& report) : map_(map), report_(report) {
        names_.reserve(map.files.size());
        for (const File& file : map.files)
            names_.push_back(shown(file.name));
    }

    std::string write() {
        xml_node html = addRoot(document_);
        setAttribute(html, "lang", "en");
        addHead(add(html, "head"));
        xml_node body = add(html, "body");
        addSummary(body);
        addFilter(body);
        xml_node main = add(body, "main");
        for (const std::size_t outermost : map_.outermost)
            addContainers(main, outermost);
        addTables(body);
        addCode(body, "script", pageScript);
        return serialize(document_);
    }

private:
    void addHead(xml_node head) {
        setAttribute(addVoid(head, "meta"), "charset", "utf-8");
        addMeta(head, "name", "viewport", "width=device-width, initial-scale=1");
        addMeta(head, "http-equiv", "Content-Security-Policy",
                fmt::format("default-src 'none'; style-src 'nonce-{0}'; script-src 'nonce-{0}'; base-uri 'none'; "
                            "form-action 'none'",
                            nonce_));
        add(head, "title", "", title());
        addCode(head, "style", pageStyle);
    }

    static void addMeta(xml_node head, const char* attribute, const char* name, const std::string& content) {
        const xml_node meta = addVoid(head, "meta");
        setAttribute(meta, attribute, name);
        setAttribute(meta, "content", content);
    }

    void addCode(xml_node parent, const char* name, const char* code) const {
        setAttribute(add(parent, name, "", code), "nonce", nonce_);
    }

    std::string title() const {
        for (const File& file : map_.files)
            if (file.isOwn)
                return shown(file.name);
        return "Full assembly";
    }

    void addSummary(xml_node body) const {
        xml_node header = add(body, "header");
        setAttribute(add(header, "h1", "", title()), "dir", "auto");
        add(header, "p", isOpen() ? "answer" : "answer restricted", answer());
        xml_node counts = add(header, "ul", "counts");
        for (const Report::Fact& fact : report_.facts) {
            const auto* const text = std::get_if<std::string>(&fact.value);
            xml_node item = add(counts, "li", "", fact.label + ": ");
            add(item, "b", "", text ? shown(*text) : std::to_string(std::get<std::int64_t>(fact.value)));
        }
        addLegend(header);
    }

    bool hasOwnFile() const {
        return std::any_of(map_.files.begin(), map_.files.end(), [](const File& file) { return file.isOwn; });
    }

    std::size_t countRestrictedContainers() const {
        return static_cast<std::size_t>(
            std::count_if(map_.containers.begin(), map_.containers.end(),
                          [](const Container& container) { return container.obstacle != Obstacle::NONE; }));
    }

    bool isOpen() const {
        return hasOwnFile() && countRestrictedContainers() == 0 && map_.unknownReferences == 0 &&
               map_.inaccessibleProjects <= 0 && map_.restrictedProjects <= 0;
    }

    std::string answer() const {
        const std::size_t open = map_.filesByObstacle[0];
        std::string text = isOpen()                   ? "Yes, all of this is open to you."
                           : open < map_.files.size() ? "No, not all of this is open to you."
                                                      : "Possibly not all of this is open to you.";
        text += fmt::format(" Files open to you: {} of {}", open, map_.files.size());
        const char* separator = "; ";
        for (std::size_t obstacle = map_.filesByObstacle.size() - 1; obstacle > 0; --obstacle)
            if (const std::size_t count = map_.filesByObstacle.at(obstacle); count > 0)
                text +=
                    fmt::format("{}{}: {}", std::exchange(separator, ", "), obstacleTexts.at(obstacle).label, count);
        text += '.';
        const auto addCount = [&](const char* what, std::size_t count) {
            if (count > 0)
                text += fmt::format(" {}: {}.", what, count);
        };
        if (!hasOwnFile())
            text += " The design itself is not in the service's answer.";
        if (open == map_.files.size())
            addCount("Projects and folders not open to you", countRestrictedContainers());
        addCount("Projects that you can't see at all", count(map_.inaccessibleProjects));
        addCount("Restricted projects", count(map_.restrictedProjects));
        addCount("Relationships with files that are not in the service's answer", map_.unknownReferences);
        return text;
    }

    // The service may send a negative number.
    static std::size_t count(std::int32_t number) { return static_cast<std::size_t>(std::max(number, 0)); }

    void addLegend(xml_node header) const {
        xml_node legend = add(header, "ul", "legend");
        for (std::size_t obstacle = 0; obstacle < obstacleTexts.size(); ++obstacle) {
            const ObstacleText& text = obstacleTexts.at(obstacle);
            xml_node item = add(legend, "li");
            add(item, "span", std::string("sign ") + text.className, text.sign);
            addText(item, fmt::format(" {} ({})", text.label, map_.filesByObstacle.at(obstacle)));
        }
        add(legend, "li", "", "\u25C6 directly referenced");
        add(legend, "li", "", "\u2605 the design itself");
        setAttribute(add(add(header, "p"), "a", "", "Tables"), "href", "#tables");
    }

    static void addFilter(xml_node body) {
        xml_node form = add(body, "form", "filter");
        setAttribute(form, "hidden", "");
        xml_node label = add(form, "label", "", "Filter files ");
        setAttribute(addVoid(label, "input"), "type", "search");
        setAttribute(add(form, "output"), "aria-live", "polite");
    }

    // Without recursion, since the service determines how deeply folders are nested. Browsers
    // support only a few hundred levels of elements, so beyond `maxDepth`, a container's box is
    // placed next to that of its parent instead of inside it.
    void addContainers(xml_node main, std::size_t outermost) const {
        struct Open {
            xml_node parent;
            std::size_t place;
            int depth;
        };
        constexpr int maxDepth = 24;
        std::vector<Open> open{{main, outermost, 0}};
        while (!open.empty()) {
            const auto [parent, place, depth] = open.back();
            open.pop_back();
            const Container& container = map_.containers[place];
            const xml_node box = addBox(parent, container);
            for (auto inner = container.containers.rbegin(); inner != container.containers.rend(); ++inner)
                open.push_back({depth < maxDepth ? box : parent, *inner, depth + 1});
        }
    }

    xml_node addBox(xml_node parent, const Container& container) const {
        constexpr std::array kinds{"Project", "Folder", "Unknown parent"};
        const ObstacleText& obstacle = textOf(container.obstacle);
        xml_node box = add(parent, "section", std::string("box ") + obstacle.className);
        xml_node heading = add(box, "h2");
        add(heading, "small", "", kinds.at(static_cast<std::size_t>(container.kind)));
        addText(heading, " ");
        add(heading, "bdi", "", shown(container.name));
        if (container.obstacle != Obstacle::NONE) {
            addText(heading, " ");
            add(heading, "span", std::string("state ") + obstacle.className,
                fmt::format("{} {}", obstacle.sign, obstacle.label));
        }
        xml_node files = add(box, "div", "files");
        for (const std::size_t file : container.files)
            addFile(files, file);
        return box;
    }

    void addFile(xml_node parent, std::size_t place) const {
        const File& file = map_.files[place];
        const ObstacleText& obstacle = textOf(file.obstacle);
        xml_node details =
            add(parent, "details", fmt::format("file {}{}", obstacle.className, file.isOwn ? " own" : ""));
        setAttribute(details, "id", fmt::format("f{}", place));
        if (file.obstacle != Obstacle::NONE)
            setAttribute(details, "title", obstacle.label);
        xml_node summary = add(details, "summary");
        addText(summary, fmt::format("{}{}{}", file.isOwn ? "\u2605 " : "", file.isDirect ? "\u25C6 " : "",
                                     file.obstacle == Obstacle::NONE ? "" : fmt::format("{} ", obstacle.sign)));
        add(summary, "bdi", "", names_[place]);
        add(details, "p", "", shown(file.id));
        addReferences(details, "refers to", file.refersTo);
        addReferences(details, "is referred to by", file.referredBy);
        if (file.unknownReferences > 0)
            add(details, "p", "",
                fmt::format("relationships with files that are not in the service's answer: {}",
                            file.unknownReferences));
    }

    void addReferences(xml_node details, const char* label, const std::vector<std::size_t>& places) const {
        if (places.empty())
            return;
        add(details, "p", "", fmt::format("{} ({})", label, places.size()));
        xml_node list = add(details, "ul");
        for (const std::size_t place : places) {
            const xml_node link = add(add(list, "li"), "a", "", names_[place]);
            setAttribute(link, "href", fmt::format("#f{}", place));
            setAttribute(link, "dir", "auto");
        }
    }

    void addTables(xml_node body) const {
        setAttribute(add(body, "h2", "", "Tables"), "id", "tables");
        for (const Report::Table& table : report_.tables) {
            if (table.rows.empty())
                continue;
            xml_node details = add(body, "details");
            add(details, "summary", "", fmt::format("{} ({})", table.title, table.rows.size()));
            addTable(add(details, "div", "wide"), table);
        }
    }

    static void addTable(xml_node parent, const Report::Table& table) {
        xml_node added = add(parent, "table");
        xml_node head = add(add(added, "thead"), "tr");
        for (const Report::Column& column : table.columns)
            add(head, "th", "", column.label);
        xml_node rows = add(added, "tbody");
        for (const auto& row : table.rows) {
            xml_node line = add(rows, "tr");
            for (const std::string& cell : row)
                setAttribute(add(line, "td", "", shown(cell)), "dir", "auto");
        }
    }

    const AssemblyMap& map_;
    const Report& report_;
    std::vector<std::string> names_; // Of the files; each may be shown many times.
    const std::string nonce_ = randomNonce();
    pugi::xml_document document_;
};

} // namespace

std::string toHTML(const AssemblyMap& map, const Report& report) {
    return PageWriter(map, report).write();
}

} // namespace OrvaneHost
