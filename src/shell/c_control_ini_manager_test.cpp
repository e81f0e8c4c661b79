// CControlIniManager with fake forms and tree views (host objects reached by
// member name): saved and restored geometry, centring, expanded nodes and
// selection, trees without nodes, and stored lists that do not fit.
#include "shell/c_control_ini_manager.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "com/class_factory.h"
#include "testing/callback_object.h"
#include "testing/expect_error.h"
#include "testing/file_bytes.h"
#include "testing/temp_dir.h"

namespace qv {
namespace {

using testing::CallbackObject;

constexpr int32_t kError = -2147220504;

// A tree view whose nodes are given as (parent index or 0, text) in index
// order; siblings follow each other in index order.
class FakeTree {
 public:
  FakeTree(std::string name, std::vector<std::pair<int, std::string>> nodes)
      : parent_{0}, text_{""}, expanded_(nodes.size() + 1, false) {
    for (auto& [parent, text] : nodes) {
      parent_.push_back(parent);
      text_.push_back(std::move(text));
    }
    nodes_.push_back(nullptr);
    for (int i = 1; i < Size(); ++i) nodes_.push_back(MakeNode(i));
    auto collection = std::make_shared<CallbackObject>();
    collection->On("Count", [this](InvokeKind, Args) {
      return Variant(static_cast<int32_t>(Size() - 1));
    });
    collection->On("Item", [this](InvokeKind, Args args) {
      return Variant(ObjectPtr(nodes_.at(args[0].ToLong())));
    });
    tree_ = std::make_shared<CallbackObject>();
    tree_->Property("Name", name).Property("Nodes", ObjectPtr(collection));
    tree_->On("SelectedItem", [this](InvokeKind kind, Args args) {
      if (kind == InvokeKind::kSet) selected_ = args[0].ToObject();
      return selected_ ? Variant(selected_) : Variant(nullptr);
    });
  }

  Variant object() const { return Variant(ObjectPtr(tree_)); }
  void Expand(std::vector<int> indices) {
    for (int i : indices) expanded_[i] = true;
  }
  void Select(int i) { selected_ = nodes_[i]; }
  std::vector<int> Expanded() const {
    std::vector<int> out;
    for (int i = 1; i < Size(); ++i) {
      if (expanded_[i]) out.push_back(i);
    }
    return out;
  }
  std::string SelectedPath() const {
    return selected_ ? selected_->Get("FullPath").ToString() : "";
  }

 private:
  int Size() const { return static_cast<int>(parent_.size()); }
  // The first node after `after` whose parent is `parent`, as a variant.
  Variant Find(int parent, int after) const {
    for (int i = after + 1; i < Size(); ++i) {
      if (parent_[i] == parent) return Variant(ObjectPtr(nodes_[i]));
    }
    return Variant(nullptr);
  }
  std::string Path(int i) const {
    return parent_[i] == 0 ? text_[i] : Path(parent_[i]) + "\\" + text_[i];
  }
  std::shared_ptr<CallbackObject> MakeNode(int i) {
    auto node = std::make_shared<CallbackObject>();
    node->On("Index", [i](InvokeKind, Args) { return Variant(int32_t{i}); });
    node->On("Expanded", [this, i](InvokeKind kind, Args args) {
      if (kind == InvokeKind::kLet) expanded_[i] = args[0].ToBoolean();
      return Variant(static_cast<bool>(expanded_[i]));
    });
    node->On("Child", [this, i](InvokeKind, Args) { return Find(i, 0); });
    node->On("Next",
             [this, i](InvokeKind, Args) { return Find(parent_[i], i); });
    node->On("FirstSibling",
             [this, i](InvokeKind, Args) { return Find(parent_[i], 0); });
    node->On("Parent", [this, i](InvokeKind, Args) {
      return parent_[i] ? Variant(ObjectPtr(nodes_[parent_[i]]))
                        : Variant(nullptr);
    });
    node->On("Root", [this, i](InvokeKind, Args) {
      int root = i;
      while (parent_[root] != 0) root = parent_[root];
      return Variant(ObjectPtr(nodes_[root]));
    });
    node->On("FullPath",
             [this, i](InvokeKind, Args) { return Variant(Path(i)); });
    return node;
  }

  std::vector<int> parent_;
  std::vector<std::string> text_;
  std::vector<bool> expanded_;
  std::vector<std::shared_ptr<CallbackObject>> nodes_;
  std::shared_ptr<CallbackObject> tree_;
  ObjectPtr selected_;
};

// Haus > EG > Raum 1, Haus > OG, Garage > Tor.
FakeTree Building() {
  return FakeTree("tvwRooms", {{0, "Haus"},
                               {1, "EG"},
                               {2, "Raum 1"},
                               {1, "OG"},
                               {0, "Garage"},
                               {5, "Tor"}});
}

class CControlIniManagerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    file_ = dir_.File("forms.ini");
    manager_ = CreateObject("qvglobal10.CControlIniManager");
    manager_->Let("IniFile", file_);
    form_ = std::make_shared<CallbackObject>();
    form_->Property("Name", "frmRaum")
        .Property("left", 10)
        .Property("top", 20)
        .Property("Width", 300)
        .Property("Height", 199)
        .On("Move", [](InvokeKind, Args) { return Variant(); });
  }

  std::string Bytes() const { return testing::ReadFileBytes(file_); }
  void Put(const std::string& bytes) { testing::WriteFileBytes(file_, bytes); }
  // Calls `member` with the control and an empty section argument by
  // reference; returns the result and the section handed back.
  std::pair<Variant, std::string> Call(const std::string& member,
                                       const Variant& control,
                                       const std::string& section = "") {
    Variant args[] = {control, Variant(section)};
    const Variant result = manager_->Invoke(member, InvokeKind::kMethod, args);
    return {result, args[1].ToString()};
  }

  testing::TempDir dir_;
  std::string file_;
  ObjectPtr manager_;
  std::shared_ptr<CallbackObject> form_;
};

TEST_F(CControlIniManagerTest, SavesRestoresAndCentresForms) {
  EXPECT_EQ(Call("SaveForm", Variant(ObjectPtr(form_))),
            std::make_pair(Variant(true), std::string("frmRaum")));
  EXPECT_EQ(Bytes(),
            "[frmRaum]\r\nLeft=10\r\nTop=20\r\nWidth=300\r\nHeight=199\r\n");

  // A section never saved centres the form on the screen instead: on the
  // default display of 1920 x 1080, (1080 - 199) / 2 is cut to 440.
  EXPECT_EQ(Call("LoadForm", Variant(ObjectPtr(form_)), "Anderswo"),
            std::make_pair(Variant(true), std::string("Anderswo")));
  EXPECT_EQ(form_->CallCount("Move"), 0u);
  EXPECT_EQ(form_->PropertyValue("left"), Variant(int32_t{810}));
  EXPECT_EQ(form_->PropertyValue("top"), Variant(int32_t{440}));

  form_->Let("left", 0);
  form_->Let("Height", 50);
  EXPECT_EQ(Call("LoadForm", Variant(ObjectPtr(form_))).first, Variant(true));
  const auto moves = form_->CallsTo("Move");
  ASSERT_EQ(moves.size(), 1u);
  EXPECT_EQ(moves[0].args, (std::vector<Variant>{int32_t{10}, int32_t{20},
                                                 int32_t{300}, int32_t{199}}));
}

TEST_F(CControlIniManagerTest, SavesAndRestoresExpandedNodesAndSelection) {
  FakeTree saved = Building();
  saved.Expand({1, 2, 5});
  saved.Select(3);
  EXPECT_EQ(Call("SaveTreeView", saved.object()),
            std::make_pair(Variant(true), std::string("tvwRooms")));
  EXPECT_EQ(Bytes(),
            "[tvwRooms]\r\nRootNodes=1,1;5,1\r\n1Node=2,1;4,0\r\n"
            "2Node=3,0\r\n5Node=6,0\r\nSelectedItem=Haus\\EG\\Raum 1\r\n");

  FakeTree restored = Building();
  EXPECT_EQ(Call("LoadTreeView", restored.object()).first, Variant(true));
  EXPECT_EQ(restored.Expanded(), (std::vector<int>{1, 2, 5}));
  EXPECT_EQ(restored.SelectedPath(), "Haus\\EG\\Raum 1");
}

TEST_F(CControlIniManagerTest, TreeWithoutNodesAndTreeWithoutState) {
  FakeTree empty("tvwRooms", {});
  EXPECT_EQ(Call("LoadTreeView", empty.object()).first, Variant(false));
  Put("[tvwRooms]\r\nRootNodes=1,0\r\n");
  EXPECT_EQ(Call("SaveTreeView", empty.object()).first, Variant(true));
  EXPECT_EQ(Bytes(), "[tvwRooms]\r\nNoNodes=-1\r\n");
  EXPECT_EQ(Call("LoadTreeView", empty.object()).first, Variant(false));

  FakeTree tree = Building();
  EXPECT_EQ(Call("SaveTreeView", tree.object()).first, Variant(true));
  EXPECT_EQ(Bytes(), "[tvwRooms]\r\nRootNodes=1,0;5,0\r\nSelectedItem=\r\n");
}

TEST_F(CControlIniManagerTest, StoredListsThatDoNotFitTheTreeRaise) {
  const std::string prefix =
      "Falsche Angaben in der Ini-Datei " + file_ + " Section tvwRooms Key ";
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"RootNodes=9,1", "RootNodes"},
      {"RootNodes=0,0", "RootNodes"},
      {"RootNodes=2,0", "RootNodes"},
      {"RootNodes=1,2", "RootNodes"},
      {"RootNodes=x,1", "RootNodes"},
      {"RootNodes=1,1;", "RootNodes"},
      {"RootNodes=1", "RootNodes"},
      {"RootNodes=1,1\r\n1Node=6,0", "1Node"},
      {"RootNodes=1,1\r\n1Node=2,1\r\n2Node=1,1", "2Node"},
  };
  for (const auto& [stored, key] : rows) {
    Put("[tvwRooms]\r\n" + stored + "\r\n");
    FakeTree tree = Building();
    EXPECT_TRUE(testing::RaisesError(
        [&] { Call("LoadTreeView", tree.object()); }, kError, prefix + key))
        << stored;
  }
}

TEST_F(CControlIniManagerTest, ErrorsOfTheIniManagerPassThrough) {
  manager_ = CreateObject("qvglobal10.CControlIniManager");
  EXPECT_EQ(manager_->Get("IniFile"), Variant(""));
  EXPECT_TRUE(testing::RaisesError(
      [&] { Call("SaveForm", Variant(ObjectPtr(form_))); }, kError,
      "qvIniManager.dll: Ini-File noch nicht angegeben"));
}

}  // namespace
}  // namespace qv
