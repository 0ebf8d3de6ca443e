// Changes inputs of a first line and an XML text as trees: elements are doubled, dropped, nested, renamed, swapped, and
// texts become what is at some border. Bytes alone seldom come to another tree that is well-formed.
#include <algorithm>
#include <array>
#include <cstring>
#include <pugixml.hpp>
#include <random>
#include <sstream>
#include <vector>

#include "fuzz/Check.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned seed);

namespace {

using Random = std::minstd_rand;

constexpr std::array kTexts = {"",
                               "0",
                               "-1",
                               "2147483647",
                               "2147483648",
                               "-2147483648",
                               "4294967295",
                               "4294967296",
                               "9223372036854775808",
                               "99999999999999999999",
                               "1e9",
                               " 7 ",
                               "+7",
                               "0x10",
                               "true",
                               "SUCCESS",
                               "FAILURE",
                               "success",
                               "\xEF\xBB\xBF",
                               "\xED\xA0\x80",
                               "\xF0\x9F\x98\x80",
                               "\xF4\x90\x80\x80",
                               "\xC0\x80",
                               "\xE2\x80\xAE",
                               "e\xCC\x81",
                               "]]",
                               "&lt;"};

std::size_t below(std::size_t limit, Random& random)
{
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

class Tree {
public:
    explicit Tree(pugi::xml_document& document) { collect(document); }

    bool isEmpty() const { return all_.empty(); }
    pugi::xml_node any(Random& random) const { return all_[below(all_.size(), random)]; }

private:
    void collect(const pugi::xml_node& parent)
    {
        for (const pugi::xml_node& child : parent.children()) {
            if (child.type() == pugi::node_element) all_.push_back(child);
            collect(child);
        }
    }

    std::vector<pugi::xml_node> all_;
};

void twice(pugi::xml_node node, const Tree&, Random&)
{
    node.parent().insert_copy_after(node, node);
}

void drop(pugi::xml_node node, const Tree&, Random&)
{
    node.parent().remove_child(node);
}

void nest(pugi::xml_node node, const Tree& tree, Random& random)
{
    tree.any(random).append_copy(node);
}

void rename(pugi::xml_node node, const Tree& tree, Random& random)
{
    const std::string name = tree.any(random).name();
    node.set_name(name.c_str());
}

void exchange(pugi::xml_node node, const Tree&, Random&)
{
    const pugi::xml_node next = node.next_sibling();
    if (next) node.parent().insert_move_after(node, next);
}

void write(pugi::xml_node node, const Tree&, Random& random)
{
    node.text().set(kTexts[below(kTexts.size(), random)]);
}

void section(pugi::xml_node node, const Tree&, Random& random)
{
    node.append_child(pugi::node_cdata).set_value(kTexts[below(kTexts.size(), random)]);
}

void remark(pugi::xml_node node, const Tree&, Random&)
{
    node.prepend_child(pugi::node_comment).set_value("x");
}

void mark(pugi::xml_node node, const Tree&, Random& random)
{
    node.append_attribute("a").set_value(kTexts[below(kTexts.size(), random)]);
}

constexpr std::array kChanges = {&twice, &drop, &nest, &rename, &exchange, &write, &write, &section, &remark, &mark};

std::string changed(pugi::xml_document& document, Random& random)
{
    for (std::size_t times = below(4, random) + 1; times > 0; --times) {
        const Tree tree(document);
        if (tree.isEmpty()) break;
        kChanges[below(kChanges.size(), random)](tree.any(random), tree, random);
    }
    std::ostringstream text;
    document.save(text, "", pugi::format_raw | pugi::format_no_declaration);
    return text.str();
}

}  // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned seed)
{
    Random random(seed);
    const std::string_view input = fuzz::bytes(data, size);
    const std::size_t head = std::min(input.find('\n'), input.size() - 1) + 1;
    pugi::xml_document document;
    const bool isTree = !input.empty() && document.load_buffer(data + head, size - head, pugi::parse_full);
    if (!isTree || below(4, random) == 0) return LLVMFuzzerMutate(data, size, most);
    const std::string text = changed(document, random);
    if (head + text.size() > most) return LLVMFuzzerMutate(data, size, most);
    std::memcpy(data + head, text.data(), text.size());
    return head + text.size();
}
