// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <map>
#include <utility>

/** The texts of a help page, by code and modifiers. */
class koShortcut {
public:
    static void addKey(const QString& group, int key, int modifiers, const QString& description);
    static void subKey(const QString& group, int key, int modifiers);
    static void addMouseButton(const QString& group, int button, int modifiers, const QString& description);
    static void subMouseButton(const QString& group, int button, int modifiers);

    static std::map<std::pair<int, int>, QString>& getKeys();
};
