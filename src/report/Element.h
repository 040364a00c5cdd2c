// Elements and their texts, for the pieces of a page.
#pragma once

#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace report {

inline void addText(pugi::xml_node node, std::string_view text) {
    node.append_child(pugi::node_pcdata).set_value(std::string(text).c_str());
}

inline pugi::xml_node addElement(pugi::xml_node node, const char* name, const char* style = nullptr) {
    pugi::xml_node added = node.append_child(name);
    if (style != nullptr) {
        added.append_attribute("class").set_value(style);
    }
    return added;
}

inline pugi::xml_node addElement(pugi::xml_node node, const char* name, const char* style,
                                 std::string_view text) {
    const pugi::xml_node added = addElement(node, name, style);
    addText(added, text);
    return added;
}

} // namespace report
