// Raw printing through CUPS: the file goes to the queue as it stands, without any filter.
#include <cups/cups.h>

#include "output/transfer/MachineTransfer.h"
#include "output/transfer/TransferLines.h"

namespace isolith {

std::vector<std::string> SystemTransfer::Printers() {
  cups_dest_t* dests = nullptr;
  const int count = cupsGetDests2(CUPS_HTTP_DEFAULT, &dests);
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) {
    if (dests[i].instance) continue;
    if (dests[i].is_default)
      names.insert(names.begin(), dests[i].name);
    else
      names.push_back(dests[i].name);
  }
  cupsFreeDests(count, dests);
  return names;
}

SendStatus SystemTransfer::SendToPrinter(const std::string& path, const std::string& printer) {
  std::string text;
  if (!ReadTransferFile(path, text)) return SendStatus::NoFile;
  std::string queue = printer;
  if (queue.empty()) {
    const std::vector<std::string> printers = Printers();
    if (printers.empty()) return SendStatus::NoPrinter;
    queue = printers.front();
  }
  cups_dest_t* dest = cupsGetNamedDest(CUPS_HTTP_DEFAULT, queue.c_str(), nullptr);
  if (!dest) return SendStatus::NoPrinter;
  cupsFreeDests(1, dest);

  const int job = cupsCreateJob(CUPS_HTTP_DEFAULT, queue.c_str(), "Torvane", 0, nullptr);
  if (job == 0) return SendStatus::PrintFailed;
  if (cupsStartDocument(CUPS_HTTP_DEFAULT, queue.c_str(), job, "Torvane", CUPS_FORMAT_RAW, 1) !=
      HTTP_STATUS_CONTINUE) {
    cupsCancelJob2(CUPS_HTTP_DEFAULT, queue.c_str(), job, 0);
    return SendStatus::PrintFailed;
  }
  bool good = true;
  for (const std::string& line : TransferLines(text, kPrinterLineLimit))
    if (good &&
        cupsWriteRequestData(CUPS_HTTP_DEFAULT, line.data(), line.size()) != HTTP_STATUS_CONTINUE)
      good = false;
  const ipp_status_t finished = cupsFinishDocument(CUPS_HTTP_DEFAULT, queue.c_str());
  if (!good || finished > IPP_STATUS_OK_CONFLICTING) {
    cupsCancelJob2(CUPS_HTTP_DEFAULT, queue.c_str(), job, 0);
    return SendStatus::PrintFailed;
  }
  return SendStatus::Sent;
}

}  // namespace isolith
