// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QHash>
#include <QString>

#include <string>
#include <vector>

namespace orv {

/// Which nodes of a GenICam description the value of a node is computed from. Reentrant.
class ReferenceGraph {
public:
    /// The number of the node with this name; a new one for a new name.
    int node(const QString& name);
    /// The number of a new node without a name.
    int unnamedNode();
    /// An evaluation of \p from evaluates \p to \p times.
    void add(int from, int to, int times);
    /// Why the value of a node cannot be computed; empty when all can. Iterative.
    std::string fault() const;
    std::string name(int node) const;

private:
    struct Edge {
        int to;
        int times;
    };
    struct Effort {
        int depth = 1;
        double evaluations = 1;
    };
    struct Visit {
        int node;
        std::size_t nextEdge = 0;
    };

    /// Computes the efforts of a node and of all below it.
    std::string visit(int root, std::vector<char>& states, std::vector<Effort>& efforts) const;
    /// Adds the efforts of the nodes that \p node refers to.
    std::string finish(int node, std::vector<Effort>& efforts) const;

    QHash<QString, int> m_numbers;
    std::vector<QString> m_names;
    std::vector<std::vector<Edge>> m_edges;
};

} // namespace orv
