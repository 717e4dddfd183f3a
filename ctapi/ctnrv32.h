/* The C interface of the CT-API library CTNRV32: four entry points that every library in its place
 * exports, the terminal maker's, the host layer's and the simulator's alike, and a fifth that a
 * library may do without.
 *
 * Codes (CT-API): 0 success, -1 invalid parameter, -8 terminal error,
 * -10 transmission error, -11 memory error (buffer too small), -127 host error, -128 HTSI error.
 * Every function returns one of them as an 8-bit value.
 *
 * ctn  number of the card terminal between init and close, chosen by the caller
 * pn   port number: 1 to 256 serial port COM n, 8192 to 8447 USB device of the driver
 * dad  in: addressed unit (1 terminal, 0 card in slot 1); out: 2, the host
 * sad  in: 2, the host; out: the unit that answered (1 terminal, 0 card)
 * lenr in: size of the response buffer in bytes; out: length of the response
 *
 * KARTOCHECK_port_info is no part of the CT-API. It tells what the library has on a port, whether
 * the port is open or not, and what keeps it from being used, without touching a card. What the
 * last call on the port came to goes before what the port looks like now:
 *
 * pn      port number; 0: what keeps every card reader from being used
 * trouble out: 0 nothing that is known, 1 the system's reader service is not installed, 2 it is not
 *         running, 3 it knows no reader, 4 another program holds the card, 5 the user may not open
 *         the device, 6 the card does not answer, 7 the reader was unplugged while it was used, 8
 *         the reader service runs and refuses this user; further numbers may come
 * length  in: size of the name buffer in bytes; out: length of the name
 * name    out: the device's name in UTF-8, without a zero at its end; empty where none is known
 *
 * Codes: 0, -1 for a port number that the library does not serve, -11 for a name that does not fit.
 * On any code but 0 trouble and length are 0.
 */
#ifndef CTNRV32_H
#define CTNRV32_H

#include <stdint.h>

/* The system calling convention of the platform: the maker's 32-bit Windows library uses stdcall.
 */
#if defined(_WIN32)
#define CTNRV32_CALL __stdcall
#define CTNRV32_EXPORT __declspec(dllexport)
#else
#define CTNRV32_CALL
#define CTNRV32_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef int8_t(CTNRV32_CALL* CTDENRVT1_init_t)(uint16_t ctn, uint16_t pn);
typedef int8_t(CTNRV32_CALL* CTDENRVT1_data_t)(uint16_t ctn, uint8_t* dad, uint8_t* sad,
                                               uint16_t lenc, const uint8_t* command,
                                               uint16_t* lenr, uint8_t* response);
typedef int8_t(CTNRV32_CALL* CTDENRVT1_close_t)(uint16_t ctn);
typedef int8_t(CTNRV32_CALL* CT_get_baudrate_t)(uint16_t ctn, int32_t* baud);
typedef int8_t(CTNRV32_CALL* KARTOCHECK_port_info_t)(uint16_t pn, uint8_t* trouble,
                                                     uint16_t* length, uint8_t* name);

CTNRV32_EXPORT int8_t CTNRV32_CALL CTDENRVT1_init(uint16_t ctn, uint16_t pn);
CTNRV32_EXPORT int8_t CTNRV32_CALL CTDENRVT1_data(uint16_t ctn, uint8_t* dad, uint8_t* sad,
                                                  uint16_t lenc, const uint8_t* command,
                                                  uint16_t* lenr, uint8_t* response);
CTNRV32_EXPORT int8_t CTNRV32_CALL CTDENRVT1_close(uint16_t ctn);
CTNRV32_EXPORT int8_t CTNRV32_CALL CT_get_baudrate(uint16_t ctn, int32_t* baud);
CTNRV32_EXPORT int8_t CTNRV32_CALL KARTOCHECK_port_info(uint16_t pn, uint8_t* trouble,
                                                        uint16_t* length, uint8_t* name);

#ifdef __cplusplus
}
#endif

#endif
