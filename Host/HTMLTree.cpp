#include "Host/HTMLTree.h"

#include <new>
#include <utility>

namespace OrvaneHost {

namespace {

template <class Result>
Result require(Result result) {
    if (!result)
        throw std::bad_alloc();
    return result;
}

// A stream would swallow `std::bad_alloc`.
class StringWriter : public pugi::xml_writer {
public:
    void write(const void* bytes, std::size_t size) override { text_.append(static_cast<const char*>(bytes), size); }
    std::string take() { return std::move(text_); }

private:
    std::string text_;
};

} // namespace

pugi::xml_node addRoot(pugi::xml_document& document) {
    require(require(document.append_child(pugi::node_doctype)).set_value("html"));
    return add(document.root(), "html");
}

// With no text at all, not even an empty one, the element would be written as a self-closing tag,
// which HTML does not have.
pugi::xml_node add(pugi::xml_node parent, const char* name, const std::string& className, const std::string& text) {
    const pugi::xml_node added = addVoid(parent, name);
    if (!className.empty())
        setAttribute(added, "class", className);
    addText(added, text);
    return added;
}

pugi::xml_node addVoid(pugi::xml_node parent, const char* name) {
    return require(parent.append_child(name));
}

void addText(pugi::xml_node parent, const std::string& text) {
    require(require(parent.append_child(pugi::node_pcdata)).set_value(text.c_str()));
}

void setAttribute(pugi::xml_node node, const char* name, const std::string& value) {
    require(require(node.append_attribute(name)).set_value(value.c_str()));
}

std::string serialize(const pugi::xml_document& document) {
    StringWriter writer;
    document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    return writer.take();
}

} // namespace OrvaneHost
