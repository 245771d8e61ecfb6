#include "xml/ChildElement.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

namespace KelvoBase
{

namespace
{

int visits = 0; // how often any node was stepped onto

/// A node of a tree that counts the steps that are taken in it.
struct CountingNode
{
    CountingNode(xercesc::DOMNode::NodeType kind, const XMLCh* label) : type(kind), name(label) {}

    CountingNode* getFirstChild() const
    {
        ++visits;
        return children.empty() ? nullptr : children.front().get();
    }
    CountingNode* getNextSibling() const
    {
        ++visits;
        return next;
    }
    xercesc::DOMNode::NodeType getNodeType() const { return type; }
    const XMLCh* getNodeName() const { return name; }

    CountingNode& add(const XMLCh* label, xercesc::DOMNode::NodeType kind = xercesc::DOMNode::ELEMENT_NODE)
    {
        auto node = std::make_unique<CountingNode>(kind, label);
        if (!children.empty()) {
            children.back()->next = node.get();
        }
        children.push_back(std::move(node));
        return *children.back();
    }

    xercesc::DOMNode::NodeType type;
    const XMLCh* name;
    CountingNode* next = nullptr;
    std::vector<std::unique_ptr<CountingNode>> children{};
};

/// A parent of three children, with a hundred times a hundred elements below the first.
std::unique_ptr<CountingNode> heavyTree()
{
    auto root = std::make_unique<CountingNode>(xercesc::DOMNode::ELEMENT_NODE, u"root");
    CountingNode& heavy = root->add(u"heavy");
    for (int i = 0; i < 100; ++i) {
        CountingNode& middle = heavy.add(u"last");
        for (int k = 0; k < 100; ++k) {
            middle.add(u"last");
        }
    }
    root->add(u"last", xercesc::DOMNode::TEXT_NODE);
    root->add(u"last");
    return root;
}

TEST(ChildElement, CostsOneWalkOverTheChildrenWhateverLiesBelowThem)
{
    const auto root = heavyTree();
    visits = 0;
    EXPECT_EQ(firstChildElement(*root, u"last"), root->children[2].get());
    EXPECT_EQ(visits, 3);
    visits = 0;
    EXPECT_EQ(firstChildElement(*root, u"missing"), nullptr);
    EXPECT_EQ(visits, 4);
    visits = 0;
    EXPECT_EQ(firstChildElement(*root, u"*"), root->children[0].get());
    EXPECT_EQ(visits, 1);
}

TEST(ChildElement, ManyRecordsAreReadInLinearTime)
{
    constexpr int records = 2000;
    auto root = std::make_unique<CountingNode>(xercesc::DOMNode::ELEMENT_NODE, u"root");
    for (int i = 0; i < records; ++i) {
        CountingNode& record = root->add(u"record");
        for (const XMLCh* field : {u"a", u"b", u"c"}) {
            record.add(field);
        }
    }
    visits = 0;
    int found = 0;
    for (const auto& record : root->children) {
        for (const XMLCh* field : {u"a", u"b", u"c"}) {
            found += firstChildElement(*record, field) ? 1 : 0;
        }
    }
    EXPECT_EQ(found, 3 * records);
    EXPECT_EQ(visits, 6 * records);
}

} // namespace

} // namespace KelvoBase
