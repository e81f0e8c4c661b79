#include "shell/c_control_ini_manager.h"

#include <charconv>
#include <optional>
#include <string_view>
#include <vector>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/text.h"
#include "platform/display.h"

namespace qv {
namespace {

constexpr const char* kFormKeys[] = {"Left", "Top", "Width", "Height"};
constexpr const char* kFormMembers[] = {"left", "top", "Width", "Height"};

// The object in a member's value; null for Nothing.
ObjectPtr Member(Object& object, std::string_view name) {
  const Variant v = object.Get(name);
  return v.IsNothing() ? nullptr : v.ToObject();
}

// `object`, or runtime error 91 when it is Nothing.
ObjectPtr Required(ObjectPtr object) {
  if (!object) throw Error::Runtime(err::kObjectVariableNotSet);
  return object;
}

// "index,flag" entries of a node and its next siblings.
std::string ChildList(ObjectPtr node) {
  std::string list;
  for (; node; node = Member(*node, "Next")) {
    if (!list.empty()) list += ';';
    list += std::to_string(node->Get("Index").ToLong());
    list += node->Get("Expanded").ToBoolean() ? ",1" : ",0";
  }
  return list;
}

std::optional<int32_t> ParseIndex(std::string_view s) {
  int32_t value = 0;
  const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), value);
  if (ec != std::errc() || end != s.data() + s.size()) return std::nullopt;
  return value;
}

}  // namespace

std::string CControlIniManager::IniFile() const {
  return ini_ ? ini_->IniFile() : std::string();
}

void CControlIniManager::SetIniFile(const std::string& sIniFile) {
  Ini().SetIniFile(sIniFile);
}

CqvIniManager& CControlIniManager::Ini() {
  if (!ini_) ini_ = std::make_shared<CqvIniManager>();
  return *ini_;
}

void CControlIniManager::DetermineSection(Object& control,
                                          std::string& sSection) {
  if (sSection.empty()) sSection = control.Get("Name").ToString();
}

bool CControlIniManager::SaveForm(const Variant& frmForm,
                                  std::string& sSection) {
  const ObjectPtr form = Required(frmForm.ToObject());
  DetermineSection(*form, sSection);
  for (size_t i = 0; i < 4; ++i) {
    Ini().WriteLong(sSection, kFormKeys[i],
                    form->Get(kFormMembers[i]).ToLong());
  }
  return true;
}

bool CControlIniManager::LoadForm(const Variant& frmForm,
                                  std::string& sSection) {
  const ObjectPtr form = Required(frmForm.ToObject());
  DetermineSection(*form, sSection);
  int32_t current[4], stored[4];
  bool unchanged = true;
  for (size_t i = 0; i < 4; ++i) {
    current[i] = form->Get(kFormMembers[i]).ToLong();
    stored[i] = Ini().GetLong(sSection, kFormKeys[i], current[i]);
    unchanged = unchanged && stored[i] == current[i];
  }
  if (unchanged) {
    const auto display = platform::Display::Current();
    form->Let("left", (display->ScreenWidth() - current[2]) / 2);
    form->Let("top", (display->ScreenHeight() - current[3]) / 2);
  } else {
    form->Call("Move", {stored[0], stored[1], stored[2], stored[3]});
  }
  return true;
}

bool CControlIniManager::SaveExpanded(const ObjectPtr& first,
                                      const std::string& sSection) {
  for (ObjectPtr node = first; node; node = Member(*node, "Next")) {
    if (!node->Get("Expanded").ToBoolean()) continue;
    const ObjectPtr child = Member(*node, "Child");
    const std::string key =
        std::to_string(node->Get("Index").ToLong()) + "Node";
    if (!Ini().WriteString(sSection, key, ChildList(child)) ||
        !SaveExpanded(child, sSection)) {
      return false;
    }
  }
  return true;
}

bool CControlIniManager::SaveTreeView(const Variant& tvwTreeView,
                                      std::string& sSection) {
  const ObjectPtr tree = Required(tvwTreeView.ToObject());
  DetermineSection(*tree, sSection);
  const ObjectPtr nodes = Required(tree->Get("Nodes").ToObject());
  if (nodes->Get("Count").ToLong() == 0) {
    const bool written = Ini().WriteLong(sSection, "NoNodes", -1);
    return Ini().DeleteKey(sSection, "RootNodes") && written;
  }
  bool ok = Ini().DeleteKey(sSection, "NoNodes");
  const ObjectPtr any = nodes->Call("Item", {int32_t{1}}).ToObject();
  const ObjectPtr first = Required(
      Member(*Required(Member(*Required(any), "Root")), "FirstSibling"));
  ok = ok && Ini().WriteString(sSection, "RootNodes", ChildList(first)) &&
       SaveExpanded(first, sSection);
  const ObjectPtr selected = Member(*tree, "SelectedItem");
  const std::string path = selected ? selected->Get("FullPath").ToString() : "";
  return Ini().WriteString(sSection, "SelectedItem", path) && ok;
}

void CControlIniManager::ExpandList(const std::string& list,
                                    const std::string& key, Object& nodes,
                                    const Variant& parent_index,
                                    const std::string& sSection,
                                    std::set<int32_t>& visited) {
  const auto misfit = [&] {
    return Error::Object1000("Falsche Angaben in der Ini-Datei " + IniFile() +
                             " Section " + sSection + " Key " + key);
  };
  const int32_t count = nodes.Get("Count").ToLong();
  for (const std::string& entry : text::Split(list, ";")) {
    const std::vector<std::string> parts = text::Split(entry, ",");
    const std::optional<int32_t> index =
        parts.size() == 2 ? ParseIndex(parts[0]) : std::nullopt;
    if (!index || *index < 1 || *index > count ||
        (parts[1] != "0" && parts[1] != "1")) {
      throw misfit();
    }
    const ObjectPtr node = Required(nodes.Call("Item", {*index}).ToObject());
    const ObjectPtr parent = Member(*node, "Parent");
    const bool fits =
        parent ? !parent_index.IsEmpty() &&
                     parent->Get("Index").ToLong() == parent_index.ToLong()
               : parent_index.IsEmpty();
    if (!fits) throw misfit();
    const bool expand = parts[1] == "1";
    node->Let("Expanded", expand);
    if (expand && visited.insert(*index).second) {
      const std::string child_key = std::to_string(*index) + "Node";
      ExpandList(Ini().GetString(sSection, child_key), child_key, nodes,
                 Variant(*index), sSection, visited);
    }
  }
}

Variant CControlIniManager::LoadTreeView(const Variant& tvwTreeView,
                                         std::string& sSection) {
  const ObjectPtr tree = Required(tvwTreeView.ToObject());
  DetermineSection(*tree, sSection);
  if (Ini().GetBoolean(sSection, "NoNodes")) return false;
  const std::string roots = Ini().GetString(sSection, "RootNodes");
  if (roots.empty()) return false;
  const ObjectPtr nodes = Required(tree->Get("Nodes").ToObject());
  std::set<int32_t> visited;
  ExpandList(roots, "RootNodes", *nodes, Variant(), sSection, visited);
  const std::string path = Ini().GetString(sSection, "SelectedItem");
  const int32_t count = nodes->Get("Count").ToLong();
  for (int32_t i = 1; !path.empty() && i <= count; ++i) {
    const ObjectPtr node = Required(nodes->Call("Item", {i}).ToObject());
    if (node->Get("FullPath").ToString() == path) {
      tree->Set("SelectedItem", node);
      break;
    }
  }
  return true;
}

ClassInfo CControlIniManager::BuildClassInfo() {
  using C = CControlIniManager;
  return ClassBuilder<C>("CControlIniManager")
      .Let("IniFile", &C::SetIniFile)
      .Get("IniFile", &C::IniFile)
      .Method("SaveForm", &C::SaveForm, {Variant("")})
      .Method("LoadForm", &C::LoadForm, {Variant("")})
      .Method("SaveTreeView", &C::SaveTreeView, {Variant("")})
      .Method("LoadTreeView", &C::LoadTreeView, {Variant("")})
      .Build();
}

QV_REGISTER_CLASS(CControlIniManager);

}  // namespace qv
