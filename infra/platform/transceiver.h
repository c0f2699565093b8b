/* Transceiver identity (FCOT): the EEPROM images and the record in which the port manager hands them over. */
#ifndef PLATFORM_TRANSCEIVER_H
#define PLATFORM_TRANSCEIVER_H

#include "platform/if_index.h"
#include "platform/mts.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Number of a port on its card. */
typedef uint8 port_num_t;

/* The serial-ID page of SFF-8472 (address A0h) byte for byte, then the port manager's own trailer. Wire format. */
typedef struct lc_fcot_info_t {
  uint8 xcvrId;
  uint8 xcvrExtdId;
  uint8 connectType;
  uint8 xcvrCode[8];
  uint8 encoding;
  uint8 brIn100Mhz; /* nominal bit rate, 100 MBd */
  uint8 baseResvd1;
  uint8 distInKmFor9u;      /* 9/125 um fibre, km      */
  uint8 distaneIn100mFor9u; /* 9/125 um fibre, 100 m   */
  uint8 distaneIn10mFor50u; /* 50/125 um fibre, 10 m   */
  uint8 distaneIn10mFor60u; /* 62.5/125 um fibre, 10 m */
  uint8 distaneIn1mForCu;   /* copper, m               */
  uint8 baseResvd2;
  char VendorName[16]; /* blank-padded, not terminated */
  uint8 baseResvd3;
  uint8 VendorID[3]; /* OUI */
  char VendorPN[16];
  char VendorRev[4];
  uint8 baseResvd4[3];
  uint8 ccid; /* base checksum */
  uint8 extdOption[2];
  uint8 brMaxMargin;
  uint8 brMinMargin;
  char VendorSN[16];
  char DateCode[8];
  uint8 diagMonType;
  uint8 enhancedOption;
  uint8 SFF8472Compliance;
  uint8 ccex; /* extended checksum */
  uint8 vendorData[32];
  be32 maxSpeed; /* Mbit/s */
  be32 minSpeed; /* Mbit/s */
  port_num_t fcotNum;
  uint8 fcotType;
  uint8 gigaEthCC;
  uint8 FCTxType;
} lc_fcot_info_t;
static_assert(sizeof(lc_fcot_info_t) == 140, "wire size");
static_assert(offsetof(lc_fcot_info_t, VendorName) == 20, "EEPROM address");
static_assert(offsetof(lc_fcot_info_t, ccid) == 63, "EEPROM address");
static_assert(offsetof(lc_fcot_info_t, ccex) == 95, "EEPROM address");
static_assert(offsetof(lc_fcot_info_t, maxSpeed) == 128, "wire offset");

/* The NVR image of the XENPAK agreement byte for byte, then the port manager's own trailer. Wire format. */
typedef struct lc_fcot_x2_info_t {
  uint8 xcvr_type;
  uint8 connector_type;
  uint8 bit_encoding;
  be16 bit_rate_mbps;
  uint8 protocol_type;
  uint8 xg_eth_code[2];
  uint8 sonet_sdh_code[4];
  uint8 xgfc_code[4];
  uint8 range[2];
  uint8 fibre_type[2];
  uint8 wave_len_ch0[3];
  uint8 wave_len_ch1[3];
  uint8 wave_len_ch2[3];
  uint8 wave_len_ch3[3];
  uint8 package_oui[4];
  uint8 vendor_oui[4];
  char vendor_name[16]; /* blank-padded, not terminated */
  char vendor_pn[16];
  char vendor_rev[2];
  char vendor_ser_no[16];
  char date_code[8];
  char lot_code[2];
  uint8 five_v_stressed_env;
  uint8 three_three_v_stressed_env;
  uint8 aps_stressed_env;
  uint8 normal_aps_volt;
  uint8 dig_opt_monitoring_cap;
  uint8 low_pwr_startup_cap;
  uint8 reserved;
  uint8 checksum;
  uint8 writable_area[48];         /* the module's own part number is at 140 of the image */
  uint8 extnd_vendor_specific[89]; /* the vendor's extended module code is at 206 of the image */
  be32 max_speed;                  /* Mbit/s */
  be32 min_speed;                  /* Mbit/s */
  port_num_t fcot_num;
  uint8 fcot_type;
  uint8 giga_eth_cc;
  uint8 fc_tx_type;
} lc_fcot_x2_info_t;
static_assert(sizeof(lc_fcot_x2_info_t) == 257, "wire size");
static_assert(offsetof(lc_fcot_x2_info_t, vendor_name) == 40, "NVR address");
static_assert(offsetof(lc_fcot_x2_info_t, writable_area) == 108, "NVR address");
static_assert(offsetof(lc_fcot_x2_info_t, extnd_vendor_specific) == 156, "NVR address");
static_assert(offsetof(lc_fcot_x2_info_t, max_speed) == 245, "wire offset");

enum { X2_EXTENDED_CODE = 206 - 156 }; /* index of the vendor's extended module code in extnd_vendor_specific */

enum { FCOT_NONE = 0, FCOT_SUPPORTED = 1 }; /* is_fcot_supported; others: present, not supported */
enum { FCOT_TYPE_SFP = 1, FCOT_TYPE_X2 = 2, FCOT_TYPE_SFP_PLUS = 4 }; /* fcot_type; others: unsupported */

/* The transceiver of one port. Wire format. */
typedef struct pm_fcot_res_t {
  be32 if_index;
  be32 status;
  uint8 is_fcot_supported;
  union {
    lc_fcot_info_t fcot_info;
    lc_fcot_x2_info_t x2_fcot_info;
  } fi;
  uint8 fcot_type;
} pm_fcot_res_t;
static_assert(sizeof(pm_fcot_res_t) == 267, "wire size");
static_assert(offsetof(pm_fcot_res_t, is_fcot_supported) == 8, "wire offset");
static_assert(offsetof(pm_fcot_res_t, fcot_type) == 266, "wire offset");

/*
 * Asks the port manager for the transceiver of a port; range, constants, time-out and results as for
 * pm_cmi_get_port_config(). Stores the size of the block in bytes and the block, which the caller frees.
 */
int32 pm_cmi_get_fcot_info(mts_q_handle_t q, uint32 version, uint32 instance, const if_index_range_t* range,
                           uint32* length, pm_fcot_res_t** response, int32 timeout);

/* Texts of the vendor's extended module code; the second argument is 0. Constant texts. */
const char* pm_get_sfp_tarno_gbic_type(uint8 code, int32 unused);
const char* pm_get_x2_sfp_tarno_xenpak_type(uint8 code, int32 unused);

/* Print the Fibre-Channel transmitter lines of an image; `sfp_sprom` holds a whole lc_fcot_info_t or lc_fcot_x2_info_t.
 */
void print_sfp_fc_transmitter(uint8* sfp_sprom);
void print_x2_sfp_fc_info(uint8* sfp_sprom);

/*
 * Diagnostics of one transceiver. Values are unusable unless calib_type is 1 (internal) or 2 (external); a power of 0
 * is not available. Wire format.
 */
typedef struct mts_get_sfp_diag_info_t {
  be32 if_index;
  be_int32 status;
  be32 calib_type;
  be_int32 temp; /* thousandths of a degree Celsius */
  be32 volt;     /* microvolts   */
  be32 curr;     /* microamperes */
  be32 tx_pwr;   /* microwatts   */
  be32 rx_pwr;   /* microwatts   */
  be32 alarm_flags;
  be32 warn_flags;
  be32 calib_temp_slope;
  be32 calib_temp_offset;
  be32 calib_volt_slope;
  be32 calib_volt_offset;
  be32 calib_current_slope;
  be32 calib_current_offset;
  be32 calib_tx_pwr_slope;
  be32 calib_tx_pwr_offset;
  be32 calib_rx_pwr_4; /* receive-power polynomial, highest order first */
  be32 calib_rx_pwr_3;
  be32 calib_rx_pwr_2;
  be32 calib_rx_pwr_1;
  be32 calib_rx_pwr_0;
  be_int32 temp_hi_alarm;
  be_int32 temp_lo_alarm;
  be_int32 temp_hi_warn;
  be_int32 temp_lo_warn;
  be32 volt_hi_alarm;
  be32 volt_lo_alarm;
  be32 volt_hi_warn;
  be32 volt_lo_warn;
  be32 current_hi_alarm;
  be32 current_lo_alarm;
  be32 current_hi_warn;
  be32 current_lo_warn;
  be32 tx_pwr_hi_alarm;
  be32 tx_pwr_lo_alarm;
  be32 tx_pwr_hi_warn;
  be32 tx_pwr_lo_warn;
  be32 rx_pwr_hi_alarm;
  be32 rx_pwr_lo_alarm;
  be32 rx_pwr_hi_warn;
  be32 rx_pwr_lo_warn;
} mts_get_sfp_diag_info_t;
static_assert(sizeof(mts_get_sfp_diag_info_t) == 172, "wire size");
static_assert(offsetof(mts_get_sfp_diag_info_t, temp) == 12, "wire offset");
static_assert(offsetof(mts_get_sfp_diag_info_t, calib_rx_pwr_4) == 72, "wire offset");
static_assert(offsetof(mts_get_sfp_diag_info_t, rx_pwr_lo_warn) == 168, "wire offset");

enum { SFP_DDM_TLV_BYTES = 256 };

/* Further diagnostics values of a module; opaque to displays. */
typedef struct sfp_diag_info_ddm_tlvs_t {
  be32 length; /* bytes used */
  uint8 tlvs[SFP_DDM_TLV_BYTES];
} sfp_diag_info_ddm_tlvs_t;

/* Results of a diagnostics query; 0 is success. */
#define PM_ERR_SFP_NO_PORT 0x4029000B
#define PM_ERR_SFP_NOT_PRESENT 0x4029002A
#define PM_ERR_SFP_NO_DIAGNOSTICS 0x40290041
#define PM_ERR_SFP_NO_INFORMATION 0x40290042
#define PM_ERR_SFP_READ 0x40290043

/* Diagnostics of a port's transceiver from the port manager, into the caller's zeroed records. Returns 0 or one above.
 */
int32 pm_get_sfp_diag_info(mts_q_handle_t q, if_index_t if_index, mts_get_sfp_diag_info_t* diag_info,
                           sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);

#ifdef __cplusplus
}
#endif
#endif
