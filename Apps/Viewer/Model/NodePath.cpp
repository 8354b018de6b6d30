// SPDX-License-Identifier: MIT
#include "Viewer/Model/NodePath.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace quon::viewer {

namespace {

// From here on one walk over the whole model costs less than finding the place of each node among its siblings.
constexpr std::size_t FewNodes = 32;

// The largest number of children that a path may name, far above what a scene can hold.
constexpr std::size_t LongestPlace = 9;

// Every bit of the result depends on every bit of the input; constants of the splitmix64 generator.
std::uint64_t mix(std::uint64_t value)
{
    value += 0x9e3779b97f4a7c15U;
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
    return value ^ (value >> 31);
}

// FNV-1a: std::hash may differ from one standard library to the next.
std::uint64_t hashText(const std::string& text)
{
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char character : text) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001b3U;
    }
    return hash;
}

std::uint64_t hashNode(const std::uint64_t parent, const std::size_t place, const osg::NodePtr& node)
{
    return mix(parent ^ mix(place) ^ hashText(NodeUtils::getName(node)));
}

// The places from the root to the node; false when the node is not within the root.
bool findPlaces(const osg::NodePtr& root, const osg::NodePtr& node,
                std::vector<std::pair<std::size_t, osg::NodePtr>>& places)
{
    places.clear();
    osg::NodePtr current = node;
    while (current != osg::NullFC && current != root) {
        const osg::NodePtr parent = current->getParent();
        if (parent != osg::NullFC) {
            places.emplace_back(static_cast<std::size_t>(parent->findChild(current)), current);
        }
        current = parent;
    }
    std::reverse(places.begin(), places.end());
    return current != osg::NullFC;
}

} // namespace

std::string NodePath::get(const osg::NodePtr& root, const osg::NodePtr& node)
{
    std::vector<std::pair<std::size_t, osg::NodePtr>> places;
    if (node == osg::NullFC || !findPlaces(root, node, places)) {
        return {};
    }
    std::string path;
    for (const auto& [place, child] : places) {
        path += "/" + std::to_string(place);
    }
    return path.empty() ? "/" : path;
}

std::vector<std::string> NodePath::getAll(const osg::NodePtr& root, const std::vector<osg::NodePtr>& nodes)
{
    std::unordered_map<osg::UInt32, std::string> known;
    if (nodes.size() > FewNodes) {
        for (const osg::NodePtr& node : nodes) {
            if (node != osg::NullFC) {
                known.try_emplace(osg::getContainerId(node));
            }
        }
        std::vector<std::pair<osg::NodePtr, std::string>> pending;
        if (root != osg::NullFC) {
            pending.emplace_back(root, std::string());
        }
        while (!pending.empty()) {
            const auto [node, path] = std::move(pending.back());
            pending.pop_back();
            if (const auto wanted = known.find(osg::getContainerId(node)); wanted != known.end()) {
                wanted->second = path.empty() ? "/" : path;
            }
            for (osg::UInt32 place = 0; place < node->getNChildren(); ++place) {
                pending.emplace_back(node->getChild(place), path + "/" + std::to_string(place));
            }
        }
    }
    std::vector<std::string> paths;
    paths.reserve(nodes.size());
    for (const osg::NodePtr& node : nodes) {
        const auto found = node == osg::NullFC ? known.end() : known.find(osg::getContainerId(node));
        paths.push_back(found != known.end() ? found->second : get(root, node));
    }
    return paths;
}

osg::NodePtr NodePath::find(const osg::NodePtr& root, const std::string& path)
{
    if (!isPath(path)) {
        return osg::NullFC;
    }
    osg::NodePtr node = root;
    std::size_t begin = 1;
    while (node != osg::NullFC && begin < path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const auto place = static_cast<osg::UInt32>(std::stoul(path.substr(begin, end - begin)));
        node = place < node->getNChildren() ? node->getChild(place) : osg::NodePtr(osg::NullFC);
        begin = end + 1;
    }
    return node;
}

bool NodePath::isPath(const std::string& text)
{
    if (text.empty() || text[0] != '/') {
        return false;
    }
    std::size_t begin = 1;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find('/', begin), text.size());
        if (end == begin || end - begin > LongestPlace || text.find_first_not_of("0123456789", begin) < end ||
            end + 1 == text.size()) {
            return false;
        }
        begin = end + 1;
    }
    return true;
}

NodeDigest NodeDigest::of(const osg::NodePtr& root, const std::set<osg::NodePtr>& nodes)
{
    if (nodes.size() > FewNodes) {
        NodeDigest digest = ofAll(root, [&](const osg::NodePtr& node) { return nodes.count(node) != 0; });
        digest.count = nodes.size();
        return digest;
    }
    NodeDigest digest;
    std::vector<std::pair<std::size_t, osg::NodePtr>> places;
    for (const osg::NodePtr& node : nodes) {
        ++digest.count;
        if (node == osg::NullFC || !findPlaces(root, node, places)) {
            continue;
        }
        std::uint64_t hash = hashNode(0, 0, root);
        for (const auto& [place, child] : places) {
            hash = hashNode(hash, place, child);
        }
        digest.checksum += hash;
    }
    return digest;
}

NodeDigest NodeDigest::ofAll(const osg::NodePtr& root, const std::function<bool(const osg::NodePtr&)>& condition)
{
    NodeDigest digest;
    std::vector<std::pair<osg::NodePtr, std::uint64_t>> pending;
    if (root != osg::NullFC) {
        pending.emplace_back(root, hashNode(0, 0, root));
    }
    while (!pending.empty()) {
        const auto [node, hash] = pending.back();
        pending.pop_back();
        if (condition(node)) {
            ++digest.count;
            digest.checksum += hash;
        }
        for (osg::UInt32 place = 0; place < node->getNChildren(); ++place) {
            const osg::NodePtr child = node->getChild(place);
            pending.emplace_back(child, hashNode(hash, place, child));
        }
    }
    return digest;
}

NodeDigest NodeDigest::ofModel(const osg::NodePtr& root, const int partCount)
{
    NodeDigest digest = ofAll(root, [](const osg::NodePtr&) { return true; });
    digest.count = static_cast<std::size_t>(partCount);
    return digest;
}

NodeDigest NodeDigest::ofHidden(const osg::NodePtr& root)
{
    return ofAll(root, [](const osg::NodePtr& node) { return node->getTravMask() == 0; });
}

NodeDigest NodeDigest::ofLocked(const osg::NodePtr& root)
{
    return ofAll(root, [](const osg::NodePtr& node) { return !koNodeUtils::isEditable(node); });
}

} // namespace quon::viewer
