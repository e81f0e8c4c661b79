#include "messages/convert_msg.h"

#include <exception>
#include <string_view>
#include <vector>

#include "com/error.h"
#include "com/text.h"
#include "messages/app_context.h"
#include "messages/internal/placeholder_values.h"
#include "platform/file_system.h"
#include "platform/help_viewer.h"
#include "platform/message_box.h"

namespace qv {
namespace {

using platform::MessageBox;
using text::CompareMode;

constexpr char kCrLf[] = "\r\n";
constexpr char kHelpFileMissing[] =
    "Finde die Hilfedatei@@n@@@@1, Pfad auf die Hilfedatei@@@@n@@nicht.";

std::string Join(const std::vector<std::string>& parts, std::string_view sep) {
  std::string out;
  for (size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) out += sep;
    out += parts[i];
  }
  return out;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The pattern "#,###/*": a digit, a comma, three digits, a slash, any rest.
bool IsPropertyList(std::string_view s) {
  return s.size() >= 6 && IsDigit(s[0]) && s[1] == ',' && IsDigit(s[2]) &&
         IsDigit(s[3]) && IsDigit(s[4]) && s[5] == '/';
}

std::string Text(std::string_view a, int32_t n, std::string_view b) {
  return std::string(a) + std::to_string(n) + std::string(b);
}

// One conversion. Each step runs through Step(), which shows a failing
// step's error and lets the conversion go on with the next step, so that a
// faulty text still yields what the remaining steps make of it.
class Conversion {
 public:
  Conversion(const std::string& msg, const SafeArray& values)
      : msg_(msg), values_(values) {}

  std::string Run();

 private:
  template <class F>
  bool Step(F&& step) {
    try {
      step();
      return true;
    } catch (const Error& e) {
      Show(e.description());
    } catch (const std::exception& e) {
      Show(e.what());
    }
    return false;
  }
  void Show(const std::string& description) const {
    MessageBox::Show("mQVMessages->ConvertMsg: " + description + kCrLf +
                         "Nachricht: ''" + msg_ + "''",
                     "qv-software", MessageBox::kCritical);
  }

  void TakePropertyList();
  void ConvertPlaceholder(size_t i);
  void FormatAsProperty(std::string& piece, const Variant& value);

  const std::string& msg_;
  const SafeArray& values_;
  std::vector<std::string> pieces_;
  std::vector<std::string> properties_;
  bool has_properties_ = false;
  int16_t n_ = 0;  // kept from one placeholder to the next, as it was
};

std::string Conversion::Run() {
  const std::string text =
      Join(text::Split(msg_, "@@n@@", CompareMode::kText), kCrLf);
  pieces_ = text::Split(text, "@@");
  if (pieces_.size() <= 1) return text;
  Step([&] {
    if ((pieces_.size() - 1) % 2 != 0) {
      throw Error::Object1000(
          "Anzahl der Platzhalter @@ ist nicht durch 2 teilbar!");
    }
  });
  Step([&] { TakePropertyList(); });
  for (size_t i = 1; i < pieces_.size(); i += 2) ConvertPlaceholder(i);
  return Join(pieces_, "");
}

void Conversion::TakePropertyList() {
  const size_t m = pieces_.size() - 1;
  if (!IsPropertyList(pieces_[m - 1])) return;
  const std::string list = pieces_[m - 1];
  pieces_.resize(m - 1);
  has_properties_ = true;
  properties_ = text::Split(list, ",");
  if (static_cast<int64_t>(pieces_.size()) - 1 <
      static_cast<int64_t>(properties_.size()) - 1) {
    throw Error::Object1000(
        std::string("Die Anzahl der Formatierungs-Teilstrings im "
                    "Ausgabestring") +
        kCrLf + list + kCrLf + "ist kleiner als die Anzahl der " + kCrLf +
        "QvProperties im QvProperties-Teilstring.");
  }
}

void Conversion::ConvertPlaceholder(size_t i) {
  std::string& piece = pieces_[i];
  const std::string placeholder = piece;
  std::vector<std::string> parts;
  auto number_part = [&]() -> const std::string& {
    if (parts.empty()) throw Error::Runtime(err::kSubscriptOutOfRange);
    return parts[0];
  };
  Step([&] {
    parts = text::Split(placeholder, ",");
    if (parts.size() < 2) {
      throw Error::Object1000("Der ValuePlatzHalter " + placeholder +
                              " enthält kein ','. Syntaxerror!");
    }
  });
  Step([&] {
    if (!IsNumeric(Variant(number_part()))) {
      throw Error::Object1000("Im ValuePlatzHalter " + placeholder +
                              " ist kein ValuePlatzHalterNummer angeben");
    }
  });
  Step([&] { n_ = Variant(number_part()).ToInteger(); });
  if (n_ < 1) {
    piece.clear();
    return;
  }
  Variant value;
  Step([&] { internal::CheckInnerArrayBase(values_); });
  Step([&] { value = internal::PlaceholderValue(values_, n_); });
  Step([&] {
    if (value.IsEmpty()) {
      throw Error::Object1000(
          Text("Für den Index ", n_, " konnte kein Platzhalter-Wert ") + kCrLf +
          "im Übergabeparameter ValuePlatzHalter gefunden werden");
    }
  });
  if (!has_properties_) {
    Step([&] { piece = value.ToString(); });
  } else {
    Step([&] { FormatAsProperty(piece, value); });
  }
}

void Conversion::FormatAsProperty(std::string& piece, const Variant& value) {
  size_t match = properties_.size();
  for (size_t j = 0; j < properties_.size(); j += 2) {
    const Variant entry(properties_[j]);
    if (!IsNumeric(entry)) {
      Show("Im QvProperties wurde die Zeichenfolge '" + properties_[j] +
           "' gefunden, die keiner Zahl entspricht");
    } else if (Equal(entry, Variant(n_)) == true) {
      match = j;
      break;
    }
  }
  if (match == properties_.size()) {
    throw Error::Object1000(
        Text("Konnte zu den Index '", n_, "' keinen Index in den ") + kCrLf +
        "in den QvProperties finden.");
  }
  if (match + 1 >= properties_.size()) {
    throw Error::Runtime(err::kSubscriptOutOfRange);
  }
  auto properties = std::make_shared<central::QvProperties>();
  properties->SetLanguage(AppContext::Current()->Language());
  properties->SetProperty(properties_[match + 1]);
  properties->SetValue(value);
  piece = properties->Text();
  const std::string unit = GetPrintUnitText(0, properties).ToString();
  if (!unit.empty()) piece += " " + unit;
}

}  // namespace

std::string ConvertMsg(const std::string& sMsg,
                       const SafeArray& ValuePlatzHalter) {
  return Conversion(sMsg, ValuePlatzHalter).Run();
}

void CallHelpFile(int32_t lContextID, int32_t lHwnd,
                  const std::string& sHelpFile) {
  const auto context = AppContext::Current();
  const int32_t window = lHwnd != 0 ? lHwnd : context->MainWindowHandle();
  const std::string file =
      sHelpFile.empty() ? context->CurHelpFile() : sHelpFile;
  if (platform::FileSystem::Current()->FileExists(file)) {
    platform::HelpViewer::Show(file, lContextID, window);
    return;
  }
  MessageBox::Show(ConvertMsg(kHelpFileMissing, SafeArray{Variant(file)}),
                   "qv-software", MessageBox::kCritical | MessageBox::kOkOnly);
}

Variant GetPrintUnitText(
    int16_t nIndex,
    const std::shared_ptr<central::QvProperties>& QvCMProperties) {
  if (!QvCMProperties) throw Error::Runtime(err::kObjectVariableNotSet);
  if (nIndex != 0) throw Error::Runtime(err::kInvalidProcedureCall);
  return Variant(QvCMProperties->UnitText());
}

}  // namespace qv
