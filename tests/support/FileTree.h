// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

/// A temporary folder with files, for example as Linux has them below /sys. Removed with the
/// object.
class FileTree {
public:
    FileTree() {
        m_root = std::filesystem::temp_directory_path() /
                 ("spanlet-test-" + std::to_string(std::random_device()()));
        std::filesystem::create_directory(m_root);
        m_root = std::filesystem::canonical(m_root);
    }
    ~FileTree() { std::filesystem::remove_all(m_root); }
    FileTree(const FileTree&) = delete;
    FileTree& operator=(const FileTree&) = delete;

    const std::filesystem::path& root() const { return m_root; }

    /// Writes a file and makes the folders around it. \p file is relative to the root. Returns its
    /// absolute path.
    std::filesystem::path write(const std::filesystem::path& file, const std::string& text) const {
        std::filesystem::create_directories((m_root / file).parent_path());
        std::ofstream(m_root / file) << text;
        return m_root / file;
    }

    /// The text of a file, which is relative to the root. It is closed then, because Windows
    /// replaces no open file.
    std::string read(const std::filesystem::path& file) const {
        std::ifstream stream(m_root / file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    /// Makes a symbolic link to a folder. Both are relative to the root.
    void link(const std::filesystem::path& link, const std::filesystem::path& folder) const {
        std::filesystem::create_directories((m_root / link).parent_path());
        std::filesystem::create_directory_symlink(m_root / folder, m_root / link);
    }

private:
    std::filesystem::path m_root;
};
