// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/ReferenceGraph.h"

#include "orvcpp/core/DescriptionCheck.h"

#include <algorithm>

namespace orv {

namespace {

/// Nodes in a chain of references. Cameras have up to 30; the library recurses and overflows a
/// stack of 2 MB with 11500.
constexpr int deepest = 200;
/// Evaluations of nodes for one value, which the library does not cache.
constexpr double mostEvaluations = 1e6;

enum State : char { New, Open, Done };

} // namespace

int ReferenceGraph::node(const QString& name) {
    const auto found = m_numbers.constFind(name);
    if (found != m_numbers.constEnd())
        return *found;
    const int number = unnamedNode();
    m_names.back() = name;
    m_numbers.insert(name, number);
    return number;
}

int ReferenceGraph::unnamedNode() {
    m_names.emplace_back();
    m_edges.emplace_back();
    return static_cast<int>(m_names.size()) - 1;
}

void ReferenceGraph::add(int from, int to, int times) {
    m_edges[static_cast<std::size_t>(from)].push_back({to, times});
}

std::string ReferenceGraph::name(int node) const {
    return '"' + onOneLine(m_names[static_cast<std::size_t>(node)].toStdString()) + '"';
}

std::string ReferenceGraph::fault() const {
    std::vector<char> states(m_edges.size(), New);
    std::vector<Effort> efforts(m_edges.size());
    for (std::size_t root = 0; root < m_edges.size(); ++root) {
        if (const std::string found = visit(static_cast<int>(root), states, efforts);
            !found.empty())
            return found;
    }
    return {};
}

std::string ReferenceGraph::visit(int root, std::vector<char>& states,
                                  std::vector<Effort>& efforts) const {
    const auto state = [&states](int node) -> char& {
        return states[static_cast<std::size_t>(node)];
    };
    if (state(root) == Done)
        return {};
    std::vector<Visit> path{{root}};
    state(root) = Open;
    while (!path.empty()) {
        Visit& current = path.back();
        const auto& edges = m_edges[static_cast<std::size_t>(current.node)];
        if (current.nextEdge < edges.size()) {
            const int next = edges[current.nextEdge++].to;
            if (state(next) == Open)
                return "the value of node " + name(next) + " depends on itself";
            if (state(next) == New) {
                state(next) = Open;
                path.push_back({next});
            }
            continue;
        }
        if (const std::string found = finish(current.node, efforts); !found.empty())
            return found;
        state(current.node) = Done;
        path.pop_back();
    }
    return {};
}

std::string ReferenceGraph::finish(int node, std::vector<Effort>& efforts) const {
    Effort& effort = efforts[static_cast<std::size_t>(node)];
    for (const Edge& edge : m_edges[static_cast<std::size_t>(node)]) {
        const Effort& below = efforts[static_cast<std::size_t>(edge.to)];
        effort.depth = std::max(effort.depth, below.depth + 1);
        effort.evaluations += edge.times * below.evaluations;
    }
    if (effort.depth > deepest)
        return "the value of node " + name(node) + " depends on a chain of more than " +
               std::to_string(deepest) + " nodes";
    if (effort.evaluations > mostEvaluations)
        return "the value of node " + name(node) + " takes more than a million evaluations";
    return {};
}

} // namespace orv
