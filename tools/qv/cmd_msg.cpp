// `qv msg TEXT [VALUE...]`: converts a stored message text as the library
// shows it, for the people who write and translate message tables. Values
// that read as numbers are passed as numbers. Line breaks print as line
// breaks. A faulty text prints the text of each message box it would show
// on standard error and exits with status 1. `--lang en` formats
// quantities in English.
//
// `qv msg --properties [NUMBER]`: the property catalogue the library uses,
// or one entry of it.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <iostream>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "central/property_catalog.h"
#include "com/error.h"
#include "com/object.h"
#include "com/safe_array.h"
#include "com/text.h"
#include "com/variant.h"
#include "messages/app_context.h"
#include "messages/convert_msg.h"
#include "messages/cqv_err_list.h"
#include "messages/cqv_err_msg.h"
#include "platform/message_box.h"
#include "qv/command_registry.h"
#include "qv/tool_text.h"

namespace qv::tool {
namespace {

using central::PropertyCatalog;
using central::PropertyDef;

struct MsgOptions {
  std::string text;
  std::vector<std::string> values;
  std::string lang;
  bool properties = false;
};

class ToolContext : public AppContext {
 public:
  explicit ToolContext(QvLanguage_t_ language) : language_(language) {}
  QvLanguage_t_ Language() const override { return language_; }
  std::string CurHelpFile() const override { return {}; }
  int32_t MainWindowHandle() const override { return 0; }

 private:
  QvLanguage_t_ language_;
};

// Installs the tool's language and a message box that collects the texts.
class ConversionScope {
 public:
  explicit ConversionScope(QvLanguage_t_ language) {
    AppContext::Install(std::make_shared<ToolContext>(language));
    platform::MessageBox::SetHandler(
        [this](const std::string& text, const std::string&, int) {
          boxes += (boxes.empty() ? "" : "\n") + text;
          return platform::MessageBox::kOk;
        });
  }
  ~ConversionScope() {
    platform::MessageBox::ResetHandler();
    AppContext::Install(nullptr);
  }
  std::string boxes;
};

QvLanguage_t_ LanguageOf(const std::string& lang) {
  if (lang.empty() || text::EqualsText(lang, "de")) return qvlGerman;
  if (text::EqualsText(lang, "en")) return qvlEnglish;
  throw Error::Object1000("qv msg: unknown language '" + lang + "' (de or en)");
}

Variant ValueOf(const std::string& arg) {
  const auto number = ParseNumber(arg);
  if (!number) return Variant(arg);
  if (std::trunc(*number) == *number && std::abs(*number) <= 2147483647.0) {
    return Variant(static_cast<int32_t>(*number));
  }
  return Variant(*number);
}

std::string Lines(const std::string& s) {
  return text::Replace(s, "\r\n", "\n");
}

// Converts `text` as a module would; the texts of the boxes shown instead
// of it become the error.
std::string Convert(const std::string& text,
                    const std::vector<std::string>& args,
                    QvLanguage_t_ language) {
  SafeArray values;
  for (const std::string& arg : args) values.Append(ValueOf(arg));
  ConversionScope scope(language);
  std::string result = ConvertMsg(text, values);
  if (!scope.boxes.empty()) throw Error::Object1000(Lines(scope.boxes));
  return EscapeControlsKeepLines(Lines(result));
}

// Names and units come from a catalogue file: printed with control
// characters escaped.
void PrintEntry(const PropertyDef& d) {
  const auto e = [](const std::string& s) { return EscapeControls(s); };
  std::cout << fmt::format(
      "number     {:03d}\nname       {} / {}\nunit       {}\n"
      "display    {} / {}\nconversion value * {} + {}\ndecimals   {}\n",
      d.number, e(d.name_de), e(d.name_en), e(d.unit), e(d.unit_de),
      e(d.unit_en), FormatDouble(d.factor), FormatDouble(d.offset), d.decimals);
}

void PrintProperties(const std::string& number) {
  const auto catalog = PropertyCatalog::Default();
  if (!number.empty()) return PrintEntry(catalog->Find(number));
  std::cout << "catalogue: " << EscapeControls(catalog->source()) << '\n'
            << fmt::format("no.  {:<42} {:<28} {:<9}    {:<9} {}\n", "name",
                           "English name", "unit", "display", "decimals");
  for (const auto& [n, d] : catalog->entries()) {
    std::cout << fmt::format("{:03d}  {:<42} {:<28} {:<9} -> {:<9} {}\n", n,
                             EscapeControls(d.name_de),
                             EscapeControls(d.name_en), EscapeControls(d.unit),
                             EscapeControls(d.unit_de), d.decimals);
  }
}

void RunMsg(const MsgOptions& o) {
  if (o.properties) {
    if (!o.values.empty()) {
      throw Error::Object1000("qv msg --properties: one number at most");
    }
    return PrintProperties(o.text);
  }
  std::cout << Convert(o.text, o.values, LanguageOf(o.lang)) << '\n';
}

void AddMsgCommand(CLI::App& app) {
  auto o = std::make_shared<MsgOptions>();
  CLI::App* msg = app.add_subcommand(
      "msg", "Convert a stored message text, or list the property catalogue");
  msg->add_option("TEXT", o->text,
                  "Message text with @@n@@ and @@N,comment@@ markup "
                  "(with --properties: a property number)");
  msg->add_option("VALUE", o->values, "Placeholder values 1, 2, ...");
  msg->add_option("--lang", o->lang, "Language of quantities: de or en");
  msg->add_flag("--properties", o->properties,
                "List the property catalogue, or one entry");
  msg->callback([o] {
    if (!o->properties && o->text.empty()) {
      throw CLI::RequiredError("TEXT");
    }
    RunMsg(*o);
  });
}

// A grid for the demonstration: prints what the error list writes into it.
class PrintingGrid : public Object {
 public:
  explicit PrintingGrid(std::ostream& out) : out_(out) {}
  Variant Invoke(std::string_view name, InvokeKind, Args args) override {
    if (text::EqualsText(name, "QuickSetQvResSrcBitmap")) {
      out_ << fmt::format("    row {}: icon {}", args[1].ToLong(),
                          args[2].ToLong());
    } else if (text::EqualsText(name, "QuickSetText")) {
      out_ << "  " << Lines(args[2].ToString()) << '\n';
    } else if (text::EqualsText(name, "SetNumberRows")) {
      out_ << "    grid rows: " << args[0].ToLong() << '\n';
    }
    return Variant();
  }

 private:
  std::ostream& out_;
};

void ShowMessages(DemoContext& ctx) {
  const std::string stored =
      "Raumtemperatur @@1,Ist@@ unter @@2,Soll@@.@@n@@Heizlast @@3,Last@@ "
      "prüfen.@@1,001/Temperatur,2,001/Temperatur,3,004/Heizlast@@";
  const std::vector<std::string> values = {"290.65", "293.15", "1234.5"};
  ctx.out << "  stored text: " << stored
          << "\n  values: 290.65 K, 293.15 K, 1234.5 W\n";
  for (const char* lang : {"de", "en"}) {
    ctx.out << "  " << lang << ": "
            << text::Replace(Convert(stored, values, LanguageOf(lang)), "\n",
                             "\n      ")
            << '\n';
  }

  auto list = std::make_shared<CQvErrList>();
  auto add = [&](int32_t num, QvErrKind kind, const std::string& text,
                 const char* room) {
    CQvErrMsg msg;
    msg.m_eModul = 1;
    msg.m_lNum = num;
    msg.m_eKind = kind;
    msg.m_sMsg = text;
    msg.addField("Raum", room);
    list->addError(msg);
  };
  add(12, QvErrKindError, "Raum R12: U-Wert zu hoch", "R12");
  add(12, QvErrKindWarning, "Raum R12: U-Wert zu hoch (wiederholt)", "R12");
  add(12, QvErrKindError, "Raum R14: U-Wert zu hoch", "R14");
  add(30, QvErrKindWarning, "Raum R14: keine Fenster", "R14");
  ctx.out << "  4 messages added, " << list->m_colErrMsg()->Count()
          << " kept (the repeated message 12 for R12 is dropped)\n";
  list->set_QvTGrErr(std::make_shared<PrintingGrid>(ctx.out));
}

[[maybe_unused]] const bool kMsgDemoRegistered =
    RegisterDemoStep(80, "Messages and the error list", ShowMessages);
[[maybe_unused]] const bool kMsgRegistered =
    RegisterCommand({"msg", AddMsgCommand});

}  // namespace
}  // namespace qv::tool
