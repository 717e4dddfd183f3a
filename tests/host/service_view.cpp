#include "host/service_view.h"

#include <string>
#include <vector>

#include "host/pcsc_service.h"

namespace ctapi::test {

using host::PcscResult;

bool ServiceSeesACard() {
  host::PcscService service(host::LoadPcscApi());
  std::vector<std::string> readers;
  host::ReaderState state;
  return service.List(readers) == PcscResult::Ok && !readers.empty() &&
         service.Query(readers.front(), state) == PcscResult::Ok && state.HasCard;
}

}  // namespace ctapi::test
