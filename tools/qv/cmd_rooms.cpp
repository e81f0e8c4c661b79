// `qv rooms FILE`: the rooms of a module file in walking order, as an
// indented tree (each building, storey and apartment once, then its rooms,
// each with its "Bezeichnung"), or with --flat one line per room with the
// four keys separated by tabs. --from G/S/W/R --to G/S/W/R lists only that
// interval; an end before the start fails. --renumber numbers the rooms'
// "OrderNum" 0, 1, 2 ... in walking order, in one transaction, and says how
// many it numbered. The whole listing is read in one read transaction.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "com/error.h"
#include "com/text.h"
#include "data/cqv_connection.h"
#include "datasource/db_connection.h"
#include "datasource/qv_ds.h"
#include "datasource/qv_recordset.h"
#include "qv/command_registry.h"
#include "qv/room_file.h"
#include "qv/tool_text.h"
#include "rooms/croom_intervall.h"
#include "rooms/croom_iterator.h"
#include "rooms/room_ordering.h"

namespace qv::tool {
namespace {

struct Options {
  std::string file;
  bool flat = false;
  std::string from, to;
  bool renumber = false;
};

RoomKey ParseRoom(const std::string& option, const std::string& value) {
  const std::vector<std::string> parts = text::Split(value, "/");
  if (parts.size() != 4) {
    throw Error::Object1000(option + " " + value +
                            ": a room is given as BUILDING/STOREY/APARTMENT/"
                            "ROOM");
  }
  return {parts[0], parts[1], parts[2], parts[3]};
}

std::string Joined(const RoomKey& key, const char* separator) {
  return key[0] + separator + key[1] + separator + key[2] + separator + key[3];
}

// Writes one room: a tab-separated line, or the tree lines of the levels
// that changed since the previous room.
class RoomPrinter {
 public:
  RoomPrinter(const RoomFile& file, bool flat) : file_(file), flat_(flat) {}
  ~RoomPrinter() { std::cout << out_ << std::flush; }

  void Print(const RoomKey& key) {
    if (flat_) {
      RoomKey shown;
      for (size_t i = 0; i < key.size(); ++i) shown[i] = EscapeControls(key[i]);
      out_ += Joined(shown, "\t") + '\n';
    } else {
      int from = 0;
      while (from < 3 && previous_[from] == key[from]) ++from;
      for (int level = from; level < 4; ++level)
        out_ += std::string(2 * level, ' ') +
                EscapeControls(file_.Describe(level)) + '\n';
    }
    previous_ = key;
    if (out_.size() > (1 << 16)) {
      std::cout << out_;
      out_.clear();
    }
  }

 private:
  const RoomFile& file_;
  bool flat_;
  RoomKey previous_;
  std::string out_;
};

void ListAll(const RoomFile& file, RoomPrinter& printer) {
  ds::DbConnection::ReadTransaction read(
      file.connection().m_conConnection.get());
  const std::shared_ptr<CRoomIterator_t_> it = file.Iterator();
  for (bool ok = it->FirstRoom(); ok; ok = it->NextRoom())
    printer.Print(it->key());
}

void ListInterval(const RoomFile& file, const Options& options,
                  RoomPrinter& printer) {
  const RoomKey from = ParseRoom("--from", options.from);
  const RoomKey to = ParseRoom("--to", options.to);
  CRoomIntervall_t_ range;
  range.init(file.level(0), file.level(1), file.level(2), file.level(3));
  if (!range.startIntervall(from[0], from[1], from[2], from[3]))
    throw Error::Object1000("start room " + options.from + " not found");
  if (!range.endIntervall(to[0], to[1], to[2], to[3]))
    throw Error::Object1000("end room " + options.to + " not found");
  if (!range.testStartEndIntervall()) {
    throw Error::Object1000("the end room " + options.to +
                            " lies before the start room " + options.from);
  }
  const auto& rooms = file.level(3);
  for (bool ok = range.firstRec(rooms); ok; ok = range.nextRec(rooms)) {
    RoomKey key;
    const char* const columns[] = {"Gebaeude", "Stock", "Wohnung", "Raum"};
    for (int level = 0; level < 4; ++level)
      key[level] = rooms->getValue(columns[level]).ToString();
    printer.Print(key);
  }
}

void Renumber(const RoomFile& file) {
  // All rooms of the table, through a record set of its own that no parent
  // narrows.
  auto all = std::make_shared<ds::QvRecordset>();
  all->openTable(file.connection().m_conConnection, "raum");
  auto rooms = std::make_shared<ds::QvDs>();
  rooms->loadFromRecordset(
      all, {"Gebaeude", "Stock", "Wohnung", "Raum", "OrderNum"});
  const int32_t numbered = NumberRoomsInWalkingOrder(
      *rooms, file.level(0), file.level(1), file.level(2), file.level(3));
  std::cout << "numbered " << numbered << " room" << (numbered == 1 ? "" : "s")
            << " in walking order\n";
}

void Run(const Options& options) {
  if (options.from.empty() != options.to.empty())
    throw Error::Object1000("--from and --to go together");
  RoomFile file(options.file);
  if (options.renumber) {
    Renumber(file);
    return;
  }
  RoomPrinter printer(file, options.flat);
  if (options.from.empty()) {
    ListAll(file, printer);
  } else {
    ListInterval(file, options, printer);
  }
}

void AddRoomsCommand(CLI::App& app) {
  CLI::App* sub = app.add_subcommand(
      "rooms", "The rooms of a module file in walking order");
  auto options = std::make_shared<Options>();
  sub->add_option("FILE", options->file, "Module file")->required();
  sub->add_flag("--flat", options->flat,
                "One line per room: the four keys separated by tabs");
  sub->add_option("--from", options->from, "First room, G/S/W/R");
  sub->add_option("--to", options->to, "Last room, G/S/W/R");
  sub->add_flag("--renumber", options->renumber,
                "Number the rooms' OrderNum 0, 1, 2 ... in walking order");
  sub->callback([options] { Run(*options); });
}

[[maybe_unused]] const bool kRegistered =
    RegisterCommand({"rooms", AddRoomsCommand});

}  // namespace
}  // namespace qv::tool
