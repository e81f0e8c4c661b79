// Demonstration step: the global object with a main window and a host
// application written here, a module context on the sample project, a
// project connection from the shared container, the record clipboard and
// a message to another module.
#include <fmt/format.h>

#include <memory>
#include <string>
#include <string_view>

#include "com/error.h"
#include "com/object.h"
#include "com/text.h"
#include "data/cqv_connection.h"
#include "data/cqv_db_container.h"
#include "datasource/qv_recordset.h"
#include "modules/qv_modul_def.h"
#include "platform/file_system.h"
#include "qv/command_registry.h"
#include "records/cqv_clipboard.h"
#include "shell/cqv_globals.h"
#include "shell/cqv_modul_prop.h"

namespace qv::tool {
namespace {

// The host application: it reports the messages that modules send.
class DemoApplication : public Object {
 public:
  explicit DemoApplication(std::ostream& out) : out_(out) {}
  Variant Invoke(std::string_view name, InvokeKind, Args args) override {
    if (text::EqualsText(name, "SendQvModulMsg") && args.size() == 5) {
      out_ << fmt::format(
          "  the host application received a message from {}\n"
          "    for module {} (instance \"{}\") in {}\n",
          args[1].ToString(), args[3].ToString(), args[4].ToString(),
          args[2].ToString());
      return Variant(true);
    }
    throw Error::Runtime(err::kObjectDoesntSupport);
  }

 private:
  std::ostream& out_;
};

// The main window: it hands out the host application and the help file.
class DemoMainWindow : public Object {
 public:
  explicit DemoMainWindow(ObjectPtr app) : app_(std::move(app)) {}
  Variant Invoke(std::string_view name, InvokeKind, Args) override {
    if (text::EqualsText(name, "GetApp")) return Variant(app_);
    if (text::EqualsText(name, "CurHelpFile")) return Variant("qv.chm");
    throw Error::Runtime(err::kObjectDoesntSupport);
  }

 private:
  ObjectPtr app_;
};

void ShowGlobalObject(DemoContext& ctx) {
  auto globals = std::make_shared<CQvGlobals>();
  ObjectPtr window = std::make_shared<DemoMainWindow>(
      std::make_shared<DemoApplication>(ctx.out));
  globals->set_frmMDIParentRef(window);
  globals->set_QvLanguage(globals->StrToQvLanguage("DE"));
  ctx.out << fmt::format("  global object: language \"{}\", help file {}\n",
                         globals->QvLanguageToStr(globals->QvLanguage()),
                         globals->CurHelpFile());

  CQvModulProp prop;
  prop.set_Modul("EZ");
  prop.set_Modulname("Musterhaus");
  prop.set_ProjektPfad((ctx.folder / "Musterhaus.qv3").string());
  ctx.out << fmt::format("  module context: project \"{}\", module file {}\n",
                         prop.Projektname(), prop.FullModulPath());
  ctx.out << "  its global object shares the container: "
          << (prop.QvGlobals()->QvDbContainer() == globals->QvDbContainer()
                  ? "yes\n"
                  : "no\n");

  const auto container = globals->QvDbContainer();
  auto con = container->getQvProjectConnection(prop.FullModulPath());
  auto rooms = con->getTable("Raum");
  if (!rooms)
    throw Error::Object1000("qv demo: the sample project has no rooms");
  globals->QvClipboard()->set_qvrs(rooms);
  globals->QvClipboard()->set_Cut(false);
  ctx.out << fmt::format("  copied {} rooms of table \"{}\" to the clipboard\n",
                         rooms->getRecordCount(), rooms->getTableName());
  rooms.reset();
  container->closeQvConnection(con);
  con.reset();
  ctx.out << "  closing the project connection empties the clipboard: "
          << (globals->QvClipboard()->qvrs() ? "no\n" : "yes\n");

  const Variant receiver(int32_t{QvModulVM});
  prop.SendQvModulMsg(receiver, nullptr);
}

[[maybe_unused]] const bool kRegistered = RegisterDemoStep(
    75, "The global object and a module context", ShowGlobalObject);

}  // namespace
}  // namespace qv::tool
