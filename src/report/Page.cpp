// The frame of a page, and its text.
#include "report/Page.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "report/Element.h"
#include "report/Style.h"

namespace report {

namespace {

/// Elements that HTML closes by themselves. All others need their end: a browser reads <div/> as <div>.
constexpr std::array<std::string_view, 5> voidElements = {"br", "col", "hr", "meta", "wbr"};

/// pugixml writes XML: an element without children would be closed by itself, unless it has a text, if empty.
class OpenElements final : public pugi::xml_tree_walker {
public:
    bool for_each(pugi::xml_node& node) override {
        if (node.type() == pugi::node_element && !node.first_child() &&
            std::ranges::find(voidElements, node.name()) == voidElements.end()) {
            addText(node, "");
        }
        return true;
    }
};

void addMeta(pugi::xml_node head, const char* attribute, const char* name, const char* content) {
    pugi::xml_node meta = head.append_child("meta");
    meta.append_attribute(attribute).set_value(name);
    meta.append_attribute("content").set_value(content);
}

} // namespace

Page::Page(std::string_view title, std::string_view kind, std::string_view heading) {
    tree_.append_child(pugi::node_doctype).set_value("html");
    pugi::xml_node html = tree_.append_child("html");
    html.append_attribute("lang").set_value("es");
    pugi::xml_node head = html.append_child("head");
    head.append_child("meta").append_attribute("charset").set_value("utf-8");
    addMeta(head, "name", "viewport", "width=device-width, initial-scale=1");
    addMeta(head, "name", "color-scheme", "light dark");
    // Nothing runs and nothing is fetched, whatever the texts hold.
    addMeta(head, "http-equiv", "Content-Security-Policy", "default-src 'none'; style-src 'unsafe-inline'");
    addElement(head, "title", nullptr, title);
    addElement(head, "style", nullptr, styleSheet());

    const pugi::xml_node body = html.append_child("body");
    head_ = addElement(body, "header");
    addElement(head_, "p", "kind", kind);
    addElement(head_, "h1", nullptr, heading);
    main_ = addElement(body, "main");
    foot_ = addElement(body, "footer");
}

PageBlock Page::section(std::string_view heading, std::string_view introduction) {
    const pugi::xml_node section = addElement(main_, "section");
    addElement(section, "h2", nullptr, heading);
    if (!introduction.empty()) {
        addElement(section, "p", "introduction", introduction);
    }
    return PageBlock(section);
}

std::string Page::html() const {
    pugi::xml_document whole;
    whole.reset(tree_);
    OpenElements open;
    whole.traverse(open);
    std::ostringstream text;
    // No indentation: blanks between the pieces of a line would show.
    whole.save(text, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    text << '\n';
    return std::move(text).str();
}

} // namespace report
