#pragma once

#include <pugixml.hpp>
#include <string>

// Builds HTML as a tree of pugixml, which escapes all texts. pugixml reports only by empty results
// that memory runs out; these functions throw `std::bad_alloc` instead, so that a page never lacks a
// part.
namespace OrvaneHost {

/// Adds the document type and the element "html".
pugi::xml_node addRoot(pugi::xml_document& document);

/// Adds an element with a text, which may be empty, and an attribute "class" unless that is empty.
pugi::xml_node add(pugi::xml_node parent, const char* name, const std::string& className = "",
                   const std::string& text = "");

/// Adds a void element, which never has content, such as "meta".
pugi::xml_node addVoid(pugi::xml_node parent, const char* name);

void addText(pugi::xml_node parent, const std::string& text);

void setAttribute(pugi::xml_node node, const char* name, const std::string& value);

/// Returns the document as HTML in UTF-8.
std::string serialize(const pugi::xml_document& document);

} // namespace OrvaneHost
