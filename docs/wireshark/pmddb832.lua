-- Wireshark dissector for the protocol between the Pmddb832 module and its scanners: the bulk
-- transfers of a conversation that "pmscan convert" wrote, or of a USB capture of a real scanner.
--
-- README.md beside this file says how to use it. Each field has a filter name: pmddb832.BLOCK.FIELD,
-- as in pmddb832.set_parameters.main_resolution.

local scanner = Proto("pmddb832", "Pmddb832 scanner")

-- What the scanner is asked, what it answers, and where each field lies in it. The text between the
-- two marks is made from the tables of the module and is not edited by hand.

-- tables begin
local NAMES = {
  colour_mode = {
    {0x00, "grey"},
    {0x01, "colour planes, plain"},
    {0x02, "colour planes"},
    {0x10, "channel 1"},
    {0x13, "colour"},
    {0x20, "channel 2"},
    {0x23, "colour, blue first"},
    {0x30, "channel 3"},
  },
  mirror = {{0x00, "off"}, {0x01, "on"}},
  gamma_code = {
    {0x01, "gamma 1.0"},
    {0x02, "gamma 2.2"},
    {0x00, "gamma 3.0"},
    {0x10, "gamma 2.8"},
    {0x20, "gamma 2.5"},
  },
  option_unit = {{0x00, "off, flatbed"}, {0x01, "on"}, {0x02, "on, second side"}},
  focus_position = {{0xFF, "automatic"}},
  channel = {{0x52, "red"}, {0x47, "green"}, {0x42, "blue"}, {0x4D, "all channels"}},
  header_status = {{0x02, "knows the extended commands"}},
  header_status_2 = {{0x80, "error", trouble = true}},
  main_status = {
    {0x80, "fatal error", trouble = true},
    {0x20, "feeder variant"},
    {0x10, "second feeder capability"},
    {0x02, "warming up", trouble = true},
  },
  feeder = {
    {0x80, "installed"},
    {0x40, "error", trouble = true},
    {0x08, "empty", trouble = true},
    {0x04, "cover open", trouble = true},
    {0x02, "paper jam", trouble = true},
  },
  transparency_unit = {
    {0x80, "installed"},
    {0x40, "error", trouble = true},
    {0x02, "fault", trouble = true},
  },
  outcome = {{0x01, "no focus found", trouble = true}},
  feeder_capabilities = {
    {0x20, "feeder variant"},
    {0x10, "second capability"},
    {0x08, "third capability"},
  },
  main_status_2 = {
    {0x80, "fatal error", trouble = true},
    {0x40, "not ready", trouble = true},
    {0x02, "warming up", trouble = true},
  },
  start_byte = {{0x02, "STX"}},
  status = {{0x80, "error", trouble = true}},
  status_2 = {{0x80, "error", trouble = true}, {0x40, "no new start"}, {0x20, "last block"}},
}

local COMMANDS = {
  [0x1B3F] = {name = "product name", reply = "product"},
  [0x1B40] = {name = "reset", reply = "acknowledge"},
  [0x1B41] = {name = "scan area", parameters = 8,
    {name = "left", offset = 0, width = 2, shape = "number", unit = "pixels"},
    {name = "top", offset = 2, width = 2, shape = "number", unit = "lines"},
    {name = "width", offset = 4, width = 2, shape = "number", unit = "pixels"},
    {name = "height", offset = 6, width = 2, shape = "number", unit = "lines"}},
  [0x1B42] = {name = "halftone", parameters = 1,
    {name = "halftone code", offset = 0, shape = "code"}},
  [0x1B43] = {name = "colour mode", parameters = 1,
    {name = "colour mode", offset = 0, shape = "choice", names = NAMES.colour_mode}},
  [0x1B44] = {name = "data format", parameters = 1,
    {name = "bits per sample", offset = 0, shape = "number"}},
  [0x1B46] = {name = "condition", reply = "condition"},
  [0x1B47] = {name = "start scan", reply = "block_header"},
  [0x1B48] = {name = "zoom", parameters = 2,
    {name = "main zoom", offset = 0, shape = "number", unit = "%"},
    {name = "sub zoom", offset = 1, shape = "number", unit = "%"}},
  [0x1B49] = {name = "level and identity", reply = "level"},
  [0x1B4B] = {name = "mirror", parameters = 1,
    {name = "mirror", offset = 0, shape = "choice", names = NAMES.mirror}},
  [0x1B4C] = {name = "brightness", parameters = 1,
    {name = "brightness", offset = 0, shape = "signed"}},
  [0x1B4D] = {name = "colour correction", parameters = 1,
    {name = "colour correction", offset = 0, shape = "choice", names = NAMES.mirror}},
  [0x1B51] = {name = "sharpness", parameters = 1,
    {name = "sharpness", offset = 0, shape = "signed"}},
  [0x1B52] = {name = "resolution", parameters = 4,
    {name = "main resolution", offset = 0, width = 2, shape = "number", unit = "dpi"},
    {name = "sub resolution", offset = 2, width = 2, shape = "number", unit = "dpi"}},
  [0x1B5A] = {name = "gamma code", parameters = 1,
    {name = "gamma code", offset = 0, shape = "choice", names = NAMES.gamma_code}},
  [0x1B64] = {name = "lines per block", parameters = 1,
    {name = "lines per block", offset = 0, shape = "number"}},
  [0x1B65] = {name = "option unit", parameters = 1,
    {name = "option unit", offset = 0, shape = "choice", names = NAMES.option_unit}},
  [0x1B66] = {name = "status", reply = "status_reply"},
  [0x1B67] = {name = "parameter g", parameters = 1,
    {name = "parameter g", offset = 0, shape = "number"}},
  [0x1B6D] = {name = "colour matrix", parameters = 9},
  [0x1B70] = {name = "focus position", parameters = 1,
    {name = "focus position", offset = 0, shape = "position", names = NAMES.focus_position}},
  [0x1B71] = {name = "focus found", reply = "focus"},
  [0x1B73] = {name = "enhancement", parameters = 1,
    {name = "enhancement", offset = 0, shape = "number"}},
  [0x1B74] = {name = "threshold", parameters = 1,
    {name = "threshold", offset = 0, shape = "number"}},
  [0x1B7A] = {name = "gamma table", parameters = 257,
    {name = "channel", offset = 0, shape = "choice", names = NAMES.channel}},
  [0x1C46] = {name = "status", reply = "status"},
  [0x1C47] = {name = "start transfer", reply = "transfer_header"},
  [0x1C49] = {name = "identity", reply = "identity"},
  [0x1C57] = {name = "set parameters", parameters = 64,
    {name = "main resolution", offset = 0, width = 4, shape = "number", unit = "dpi"},
    {name = "sub resolution", offset = 4, width = 4, shape = "number", unit = "dpi"},
    {name = "area left", offset = 8, width = 4, shape = "number", unit = "pixels"},
    {name = "area top", offset = 12, width = 4, shape = "number", unit = "lines"},
    {name = "area width", offset = 16, width = 4, shape = "number", unit = "pixels"},
    {name = "area height", offset = 20, width = 4, shape = "number", unit = "lines"},
    {name = "colour mode", offset = 24, shape = "choice", names = NAMES.colour_mode},
    {name = "bits per sample", offset = 25, shape = "number"},
    {name = "option unit", offset = 26, shape = "choice", names = NAMES.option_unit},
    {name = "parameter g", offset = 27, shape = "number"},
    {name = "lines per block", offset = 28, shape = "number"},
    {name = "gamma code", offset = 29, shape = "choice", names = NAMES.gamma_code},
    {name = "brightness", offset = 30, shape = "signed"},
    {name = "colour correction", offset = 31, shape = "choice", names = NAMES.mirror},
    {name = "halftone code", offset = 32, shape = "code"},
    {name = "mode override", offset = 33, shape = "code"},
    {name = "enhancement", offset = 34, shape = "number"},
    {name = "sharpness", offset = 35, shape = "signed"},
    {name = "mirror", offset = 36, shape = "choice", names = NAMES.mirror},
    {name = "option parameter", offset = 37, shape = "code"}},
}

local REPLIES = {
  acknowledge = {size = 1},
  level = {size = 4, declares_data = true,
    {name = "header status", offset = 1, shape = "flags", names = NAMES.header_status}},
  product = {size = 4, declares_data = true,
    {name = "product name", offset = 12, width = 16, shape = "text"}},
  status_reply = {size = 4, declares_data = true,
    {name = "header status", offset = 1, shape = "flags", names = NAMES.header_status_2},
    {name = "main status", offset = 4, shape = "flags", names = NAMES.main_status},
    {name = "feeder", offset = 5, shape = "flags", names = NAMES.feeder},
    {name = "feeder width", offset = 6, width = 2, shape = "number", unit = "pixels"},
    {name = "feeder height", offset = 8, width = 2, shape = "number", unit = "pixels"},
    {name = "transparency unit", offset = 10, shape = "flags", names = NAMES.transparency_unit},
    {name = "transparency unit width", offset = 11, width = 2, shape = "number", unit = "pixels"},
    {name = "transparency unit height", offset = 13, width = 2, shape = "number", unit = "pixels"}},
  focus = {size = 4, declares_data = true,
    {name = "outcome", offset = 4, shape = "flags", names = NAMES.outcome},
    {name = "focus position", offset = 5, shape = "position"}},
  condition = {size = 4},
  identity = {size = 80,
    {name = "command level", offset = 0, width = 2, shape = "text"},
    {name = "basic resolution", offset = 4, width = 4, shape = "number", unit = "dpi"},
    {name = "minimum resolution, halved", offset = 8, width = 2, shape = "number", unit = "dpi"},
    {name = "maximum resolution, doubled", offset = 12, width = 4, shape = "number", unit = "dpi"},
    {name = "flatbed width", offset = 20, width = 4, shape = "number", unit = "pixels"},
    {name = "flatbed height", offset = 24, width = 4, shape = "number", unit = "pixels"},
    {name = "feeder width", offset = 28, width = 4, shape = "number", unit = "pixels"},
    {name = "feeder height", offset = 32, width = 4, shape = "number", unit = "pixels"},
    {name = "transparency unit width", offset = 36, width = 4, shape = "number", unit = "pixels"},
    {name = "transparency unit height", offset = 40, width = 4, shape = "number", unit = "pixels"},
    {name = "feeder capabilities", offset = 44, shape = "flags", names = NAMES.feeder_capabilities},
    {name = "product name", offset = 46, width = 16, shape = "text"}},
  status = {size = 16,
    {name = "main status", offset = 0, shape = "flags", names = NAMES.main_status_2},
    {name = "feeder", offset = 1, shape = "flags", names = NAMES.feeder},
    {name = "transparency unit", offset = 2, shape = "flags", names = NAMES.transparency_unit}},
  transfer_header = {size = 14,
    {name = "start byte", offset = 0, shape = "choice", names = NAMES.start_byte},
    {name = "status", offset = 1, shape = "flags", names = NAMES.status},
    {name = "full block", offset = 2, width = 4, shape = "number", unit = "bytes"},
    {name = "full blocks", offset = 6, width = 4, shape = "number"},
    {name = "last block", offset = 10, width = 4, shape = "number", unit = "bytes"}},
  block_header = {size = 6,
    {name = "start byte", offset = 0, shape = "choice", names = NAMES.start_byte},
    {name = "status", offset = 1, shape = "flags", names = NAMES.status_2},
    {name = "line", offset = 2, width = 2, shape = "number", unit = "bytes"},
    {name = "lines", offset = 4, width = 2, shape = "number"}},
}

local CONTROL_BYTES = {
  [0x06] = "ACK",
  [0x0C] = "FF eject the page",
  [0x15] = "NAK",
  [0x18] = "CAN cancel",
  [0x19] = "EM feed a page",
}
-- tables end

local ESC, FS = 0x1B, 0x1C
local STX, ACK, FF, NAK, CAN, EM = 0x02, 0x06, 0x0C, 0x15, 0x18, 0x19
local MOST_REPLY_BYTES = 150    -- of data that are looked at
local HEADER_BYTES = 4          -- of an information reply: start byte, status, count of data
local TABLE_BYTES, MATRIX_BYTES = 257, 9
local ERROR_BIT, LAST_BIT = 0x80, 0x20  -- of the status of a block

---------------------------------------------------------------------------------------------------
-- Fields

local fields = {}

local function declare(field)
  fields[#fields + 1] = field
  return field
end

local function slug(text)
  return (text:lower():gsub("[^%w]+", "_"))
end

local function names_by_value(row)
  local by_value = {}
  for _, name in ipairs(row.names or {}) do by_value[name[1]] = name[2] end
  return by_value
end

local function capitalised(text)
  return text:sub(1, 1):upper() .. text:sub(2)
end

local NUMBER = {[1] = ProtoField.uint8, [2] = ProtoField.uint16, [4] = ProtoField.uint32}

local function declare_named(row, filter)
  local names = row.names and names_by_value(row)
  return NUMBER[row.width](filter, capitalised(row.name), base.HEX, names)
end

local DECLARE = {
  number = function(row, filter)
    if row.unit == nil then return NUMBER[row.width](filter, capitalised(row.name), base.DEC) end
    return NUMBER[row.width](filter, capitalised(row.name), base.UNIT_STRING, {" " .. row.unit})
  end,
  signed = function(row, filter)
    return ProtoField.int8(filter, capitalised(row.name), base.DEC)
  end,
  text = function(row, filter) return ProtoField.string(filter, capitalised(row.name)) end,
  code = declare_named,
  position = declare_named,
  choice = declare_named,
  flags = function(row, filter)
    row.bits = {}
    for i, name in ipairs(row.names) do
      row.bits[i] = declare(ProtoField.bool(filter .. "." .. slug(name[2]), name[2],
                                            8 * row.width, nil, name[1]))
    end
    return NUMBER[row.width](filter, capitalised(row.name), base.HEX)
  end,
}

local function declare_rows(block, rows)
  for _, row in ipairs(rows) do
    row.width = row.width or 1
    row.field = declare(DECLARE[row.shape](row, "pmddb832." .. block .. "." .. slug(row.name)))
  end
end

local COMMAND_NAMES = {}
for key, command in pairs(COMMANDS) do
  local prefix = math.floor(key / 256) == ESC and "ESC " or "FS "
  command.title = prefix .. string.char(key % 256) .. " " .. command.name
  command.reply = command.reply or "acknowledge"
  COMMAND_NAMES[key] = command.title
  declare_rows(slug(command.name), command)
end
for name, reply in pairs(REPLIES) do declare_rows(name, reply) end

local function plain(kind, filter, label, ...)
  return declare(ProtoField[kind]("pmddb832." .. filter, label, ...))
end

local f = {
  command = plain("uint16", "command", "Command", base.HEX, COMMAND_NAMES),
  control = plain("uint8", "control", "Control byte", base.HEX, CONTROL_BYTES),
  answer = plain("uint8", "answer", "Answer", base.HEX, CONTROL_BYTES),
  asked = plain("framenum", "asked_in", "Asked in", base.NONE, frametype.REQUEST),
  start = plain("uint8", "reply.start", "Start byte", base.HEX, {[STX] = "STX"}),
  reply_status = plain("uint8", "reply.status", "Status", base.HEX),
  count = plain("uint16", "reply.count", "Data", base.UNIT_STRING, {" byte", " bytes"}),
  level = plain("string", "level.command_level", "Command level"),
  resolution = plain("uint16", "level.resolution", "Resolution", base.UNIT_STRING, {" dpi"}),
  width = plain("uint16", "level.width", "Largest width", base.UNIT_STRING, {" pixel", " pixels"}),
  height = plain("uint16", "level.height", "Largest height", base.UNIT_STRING, {" line", " lines"}),
  gamma_table = plain("bytes", "gamma_table.table", "Table"),
  matrix = plain("bytes", "colour_matrix.matrix", "Matrix"),
  block_number = plain("uint32", "block.number", "Block"),
  block_count = plain("uint32", "block.count", "Blocks in the picture"),
  block_lines = plain("uint32", "block.lines", "Lines"),
  block_bytes = plain("uint32", "block.bytes", "Bytes"),
  block_status = plain("uint8", "block.status", "Status", base.HEX),
  block_data = plain("bytes", "block.data", "Data"),
  part = plain("bytes", "part", "Part of a longer message"),
  unexpected = plain("bytes", "unexpected", "Unexpected bytes"),
}
scanner.fields = fields

local usb_bus = Field.new("usb.bus_id")
local usb_device = Field.new("usb.device_address")
local usb_direction = Field.new("usb.endpoint_address.direction")
local usb_length = Field.new("usb.data_len")
local packet_comment = Field.new("frame.comment")
local interface_name = Field.new("frame.interface_name")
local CONVERTED = "still-image device"  -- the interface of files that "pmscan convert" wrote
local usb_kind = Field.new("usb.transfer_type")
local BULK = 3
local IN_PROGRESS = -115  -- Linux tells so where a transfer begins
local usb_results = {Field.new("usb.usbd_status"), Field.new("usb.urb_status")}

local e = {}
local experts = {}
for name, row in pairs({
  refused = {"The scanner did not acknowledge", "RESPONSE_CODE", "ERROR"},
  trouble = {"The scanner reports trouble", "RESPONSE_CODE", "WARN"},
  spoiled = {"The reply does not begin with STX", "MALFORMED", "ERROR"},
  stray = {"Bytes that nothing asked for", "PROTOCOL", "ERROR"},
  unknown = {"A command that no scanner knows", "PROTOCOL", "ERROR"},
  not_zero = {"A byte that must be 0 is not", "PROTOCOL", "WARN"},
  failed = {"The transfer failed", "RESPONSE_CODE", "ERROR"},
  short = {"Less came than the host asked for", "RESPONSE_CODE", "ERROR"},
  length = {"The block is not as long as announced", "MALFORMED", "ERROR"},
  header = {"No block follows this header", "MALFORMED", "ERROR"},
  resolution = {"The identity holds not one resolution", "MALFORMED", "ERROR"},
  cut = {"The data were not kept in the capture", "UNDECODED", "NOTE"},
}) do
  e[name] = ProtoExpert.new("pmddb832." .. name, row[1], expert.group[row[2]],
                            expert.severity[row[3]])
  experts[#experts + 1] = e[name]
end
scanner.experts = experts

scanner.prefs.device = Pref.uint("Device address", 0,
    "USB address of the scanner; 0 recognises it by its first command")

---------------------------------------------------------------------------------------------------
-- Following a conversation. Each packet is read once, in its order, and becomes a list of items;
-- whenever it is shown again, the items are shown again.

local devices = {}  -- by bus and address: what was said so far and what comes next
local packets = {}  -- by frame number: the items

function scanner.init()
  devices = {}
  packets = {}
end

local function byte_at(bytes, offset)
  return bytes:byte(offset + 1) or 0
end

local function number_at(bytes, offset, width)
  local value = 0
  for i = width - 1, 0, -1 do value = value * 256 + byte_at(bytes, offset + i) end
  return value
end

local function has_bit(value, bit_value)
  return math.floor(value / bit_value) % 2 == 1
end

-- 0 when the bytes end before it.
local function value_of(rows, name, bytes)
  for _, row in ipairs(rows) do
    if row.name == name then
      local is_there = #bytes >= row.offset + row.width
      return is_there and number_at(bytes, row.offset, row.width) or 0
    end
  end
  error("the tables have no field '" .. name .. "'")
end

local SET_PARAMETERS, SCAN_AREA = COMMANDS[0x1C57], COMMANDS[0x1B41]
local LINES_PER_BLOCK = COMMANDS[0x1B64]

local function new_plan()
  return {lines_per_block = 0, height = 0, lines_at_once = false, repeated = false}
end

-- expected: what comes next; picture: the blocks under way, the next of which has "header", "block",
-- "answer" or "none" to come; exchange: the command or block that is being told, nil between the
-- host's calls.
local function new_device()
  return {expected = "nothing", message = "", plan = new_plan(), exchange = nil}
end

local function add(items, kind, transfer, item)
  item = item or {}
  item.kind, item.offset, item.length = kind, transfer.offset, transfer.length
  item.count = transfer.count
  items[#items + 1] = item
  return item
end

local function is_command(bytes)
  return #bytes == 2 and COMMANDS[256 * byte_at(bytes, 0) + byte_at(bytes, 1)] ~= nil
end

local function is_prefixed(bytes)
  return #bytes == 2 and (byte_at(bytes, 0) == ESC or byte_at(bytes, 0) == FS)
end

local function is_control(bytes)
  return #bytes == 1 and (byte_at(bytes, 0) == EM or byte_at(bytes, 0) == FF)
end

-- Pictures.

local function announce_extended_block(picture, plan)
  local lines_left = math.max(plan.height - picture.full * plan.lines_per_block, 0)
  local is_last = picture.number > picture.full
  picture.bytes = is_last and picture.last_bytes or picture.block_bytes
  picture.lines = is_last and lines_left or plan.lines_per_block
end

local function extended_picture(plan, header)
  local rows = REPLIES.transfer_header
  local picture = {
    extended = true, number = 1, next = "none", bytes = 0, lines = 0,
    block_bytes = value_of(rows, "full block", header),
    full = value_of(rows, "full blocks", header),
    last_bytes = value_of(rows, "last block", header),
  }
  picture.count = (picture.full + (picture.last_bytes > 0 and 1 or 0)) % 2^32
  if #header >= rows.size and byte_at(header, 0) == STX and
      not has_bit(byte_at(header, 1), ERROR_BIT) then
    picture.next = "block"
    announce_extended_block(picture, plan)
  end
  return picture
end

local function take_header(picture, plan, header)
  local rows = REPLIES.block_header
  picture.status = value_of(rows, "status", header)
  picture.lines = plan.lines_at_once and value_of(rows, "lines", header) or 1
  picture.bytes = value_of(rows, "line", header) * picture.lines
  local is_good = byte_at(header, 0) == STX and picture.lines > 0
  picture.next = is_good and "block" or "none"
end

local function standard_count(plan)
  if not plan.lines_at_once then return plan.height end
  if plan.lines_per_block == 0 then return 0 end
  return math.floor((plan.height + plan.lines_per_block - 1) / plan.lines_per_block)
end

-- With blocks of several lines the reply to the start is the header of the first block.
local function standard_picture(plan, header)
  local picture = {extended = false, number = 1, next = "none", bytes = 0, lines = 0, status = 0,
                   count = standard_count(plan)}
  local is_refused = #header > 1 and
      (byte_at(header, 0) ~= STX or has_bit(byte_at(header, 1), ERROR_BIT))
  if is_refused then return picture end
  picture.next = "header"
  if plan.lines_at_once and #header > 0 then take_header(picture, plan, header) end
  return picture
end

local function begin_picture(device)
  local plan = device.plan
  if device.command.reply == "transfer_header" then
    device.picture = extended_picture(plan, device.message)
  elseif device.command.reply == "block_header" then
    device.picture = standard_picture(plan, device.message)
    plan.repeated = device.picture.next == "none"
  end
end

local function awaits_picture(device)
  local next = device.picture and device.picture.next
  return device.expected == "nothing" and (next == "header" or next == "block")
end

-- What the host sends: one transfer, as the module makes them.

local function begin_command(device, key, frame)
  local command, plan = COMMANDS[key], device.plan
  device.command, device.asked, device.picture, device.message = command, frame, nil, ""
  if command.reply ~= "acknowledge" then
    device.expected = "reply"
  elseif command.parameters then
    device.expected = "letter_answer"
  else
    device.expected = "answer"
    plan = new_plan()
    device.plan = plan
  end
  if command.reply == "block_header" and plan.repeated and not plan.lines_at_once then
    device.picture = standard_picture(plan, "")
    device.expected = "nothing"
  end
end

local function note_parameters(device, bytes)
  local plan = device.plan
  if device.command == SET_PARAMETERS then
    plan.lines_per_block = value_of(SET_PARAMETERS, "lines per block", bytes)
    plan.height = value_of(SET_PARAMETERS, "area height", bytes)
  elseif device.command == SCAN_AREA then
    plan.height = value_of(SCAN_AREA, "height", bytes)
    plan.repeated = false
  elseif device.command == LINES_PER_BLOCK then
    plan.lines_per_block = byte_at(bytes, 0)
    plan.lines_at_once = true
  end
end

local function take_parameters(device, transfer, items)
  add(items, "parameters", transfer, {command = device.command, bytes = transfer.bytes})
  note_parameters(device, transfer.bytes)
  device.expected = "answer"
end

local function take_block_answer(device, byte, transfer, items)
  local picture = device.picture
  device.exchange = device.exchange or {block = picture.number}
  add(items, "control", transfer)
  if byte == CAN then
    picture.next = "none"
    device.expected = "answer"
    device.command, device.asked = nil, nil
    return
  end
  picture.number = picture.number + 1
  picture.next = picture.extended and "block" or "header"
  if picture.extended then announce_extended_block(picture, device.plan) end
end

local function take_stray_write(device, transfer, items)
  local bytes = transfer.bytes
  device.expected = "nothing"
  if is_prefixed(bytes) then
    add(items, "command", transfer, {key = 256 * byte_at(bytes, 0) + byte_at(bytes, 1)})
  elseif #bytes == 1 and CONTROL_BYTES[byte_at(bytes, 0)] then
    add(items, "control", transfer, {is_stray = true})
  else
    add(items, "stray", transfer)
  end
end

local function take_write(device, transfer, items, frame)
  local bytes = transfer.bytes
  local byte = #bytes == 1 and byte_at(bytes, 0) or nil
  local awaits_answer = device.picture ~= nil and device.picture.next == "answer"
  if device.expected == "parameters" and #bytes == device.command.parameters then
    device.exchange = device.exchange or {}
    return take_parameters(device, transfer, items)
  end
  local is_piece = device.expected == "parameters" and #bytes < device.command.parameters and
      not is_command(bytes) and not is_control(bytes)
  if awaits_answer and not is_piece and (byte == ACK or byte == CAN) then
    return take_block_answer(device, byte, transfer, items)
  end
  device.exchange = {}
  if not is_piece and is_command(bytes) then
    local key = 256 * byte_at(bytes, 0) + byte_at(bytes, 1)
    begin_command(device, key, frame)
    add(items, "command", transfer, {key = key, command = device.command})
  elseif not is_piece and is_control(bytes) then
    device.command, device.asked, device.expected = nil, nil, "answer"
    add(items, "control", transfer)
  else
    take_stray_write(device, transfer, items)
  end
end

-- What the scanner sends: one transfer, as the module makes them.

local function take_answer(device, transfer, items)
  local is_letters = device.expected == "letter_answer"
  add(items, "answer", transfer, {command = device.command, asked = device.asked})
  local is_accepted = is_letters and byte_at(transfer.bytes, 0) == ACK
  device.expected = is_accepted and "parameters" or "nothing"
end

local function declared_bytes(device)
  local is_header = REPLIES[device.command.reply].declares_data
      and #device.message >= HEADER_BYTES and byte_at(device.message, 0) == STX
  return is_header and number_at(device.message, 2, 2) or 0
end

local function take_reply(device, transfer, items)
  device.message = device.message .. transfer.bytes
  local has_data = device.expected == "reply_data"
  local item = add(items, "header", transfer, {command = device.command, asked = device.asked,
                                               bytes = device.message})
  if not has_data and declared_bytes(device) > 0 then
    device.expected = "reply_data"
    return
  end
  item.kind, item.reply = "reply", device.command.reply
  item.has_data = has_data
  device.expected = "nothing"
  begin_picture(device)
end

local function take_block_header(device, transfer, items)
  local picture = device.picture
  take_header(picture, device.plan, transfer.bytes)
  add(items, "reply", transfer, {bytes = transfer.bytes, reply = "block_header",
                                 block = picture.number, asked = device.asked,
                                 is_bad = picture.next == "none"})
end

-- The status of an extended block is its last byte; that of a standard block was in its header.
local function take_block(device, transfer, items)
  local picture = device.picture
  if picture.extended then picture.status = transfer.last_byte end
  add(items, "block", transfer, {
    number = picture.number, blocks = picture.count, lines = picture.lines, is_whole = true,
    data_bytes = transfer.count - (picture.extended and 1 or 0), announced = picture.bytes,
    status = picture.status, has_status_byte = picture.extended and transfer.has_last_byte,
    is_cut = transfer.is_cut, asked = device.asked,
  })
  local has_failed = picture.status ~= nil and has_bit(picture.status, ERROR_BIT)
  local is_over = picture.number > (picture.full or 0) or has_failed
  if not picture.extended then is_over = has_bit(picture.status, LAST_BIT) end
  picture.next = is_over and "none" or "answer"
end

local function take_picture(device, transfer, items)
  local picture = device.picture
  if device.exchange == nil or device.exchange.block ~= picture.number then
    device.exchange = {block = picture.number}
  end
  if transfer.has_failed or transfer.count == 0 then
    picture.next = "none"
    add(items, "nothing", transfer)
  elseif picture.next == "header" then
    take_block_header(device, transfer, items)
  else
    take_block(device, transfer, items)
  end
end

local function take_read(device, transfer, items)
  if awaits_picture(device) then return take_picture(device, transfer, items) end
  local expected = device.exchange and device.expected or "nothing"
  if expected == "nothing" or expected == "parameters" then
    device.exchange = {}
    add(items, "stray", transfer)
  elseif transfer.has_failed or #transfer.bytes == 0 then
    device.expected = "nothing"
    add(items, "nothing", transfer, {is_cut = transfer.is_cut})
  elseif expected == "reply" or expected == "reply_data" then
    take_reply(device, transfer, items)
  else
    take_answer(device, transfer, items)
  end
end

-- A transfer that a packet holds: what is there of it at `offset`.
local function transfer_of(packet, offset, count)
  local length = math.max(math.min(count, #packet.bytes - offset), 0)
  local bytes = packet.bytes:sub(offset + 1, offset + length)
  return {offset = offset, length = length, bytes = bytes, count = count,
          has_failed = packet.has_failed, is_cut = length < count,
          has_last_byte = length == count and count > 0,
          last_byte = length == count and count > 0 and byte_at(bytes, count - 1)
              or packet.last_byte}
end

-- The packets of a converted capture are the transfers of the host, and say where its calls begin and
-- end: what a call left unread is nothing that the next one asked for.
local function follow_transfer(device, packet, is_from_scanner, items, frame)
  if packet.is_first_of_call then device.exchange = nil end
  local transfer = transfer_of(packet, 0, packet.reported)
  if is_from_scanner then
    take_read(device, transfer, items)
  else
    take_write(device, transfer, items, frame)
    if packet.has_failed then device.expected = "nothing" end
  end
end

-- Those of a bus may hold a piece of a transfer, or several of them: `got` is what came of one.

-- How long the next one is; nil when nothing is expected.
local function expected_size(device)
  local expected, picture = device.expected, device.picture
  if awaits_picture(device) then
    if picture.next == "header" then return device.plan.lines_at_once and 6 or 4 end
    return picture.bytes + (picture.extended and 1 or 0)
  end
  if expected == "letter_answer" or expected == "answer" then return 1 end
  if expected == "reply" then return REPLIES[device.command.reply].size end
  if expected == "reply_data" then return declared_bytes(device) end
  return nil
end

local function add_piece(device, transfer, items)
  local picture = device.picture
  if not awaits_picture(device) or picture.next == "header" then
    return add(items, "part", transfer)
  end
  add(items, "block", transfer, {
    number = picture.number, blocks = picture.count, lines = picture.lines,
    announced = picture.bytes,
    data_bytes = picture.bytes, is_cut = transfer.is_cut, asked = device.asked,
  })
end

-- Of the pieces of a block only the number of bytes counts.
local function collect(device, transfer)
  local got = device.got or {bytes = "", count = 0}
  got.count = got.count + transfer.count
  got.is_cut = got.is_cut or transfer.is_cut
  if not (awaits_picture(device) and device.picture.next == "block") then
    got.bytes = got.bytes .. transfer.bytes
  end
  return got
end

-- True while there is more to follow in the packet.
local function follow_piece(device, packet, offset, items)
  local size = expected_size(device)
  local rest = packet.reported - offset
  local is_nak = packet.bytes == string.char(NAK) and packet.reported == 1
      and device.expected == "reply" and device.got == nil
  local have = device.got and device.got.count or 0
  local take = size and math.min(size - have, rest) or rest
  local transfer = transfer_of(packet, offset, take)
  if size == nil then return take_read(device, transfer, items) end
  local got = collect(device, transfer)
  device.got = got
  if is_nak then
    add(items, "answer", transfer, {command = device.command, asked = device.asked})
    device.expected, device.got = "nothing", nil
  elseif got.count < size then
    add_piece(device, transfer, items)
  else
    device.got = nil
    transfer.bytes, transfer.count, transfer.is_cut = got.bytes, got.count, got.is_cut
    take_read(device, transfer, items)
  end
  return offset + take
end

local function follow_bus_read(device, packet, items)
  device.exchange = device.exchange or {}
  if packet.has_failed then
    device.got = nil
    return take_read(device, transfer_of(packet, 0, packet.reported), items)
  end
  local offset = 0
  while offset and offset < packet.reported do
    offset = follow_piece(device, packet, offset, items)
  end
end

local function follow_bus_write(device, packet, items, frame)
  local transfer = transfer_of(packet, 0, packet.reported)
  local sent = (device.sent or "") .. transfer.bytes
  local is_prefix = #sent == 1 and (byte_at(sent, 0) == ESC or byte_at(sent, 0) == FS)
  local is_piece = device.expected == "parameters" and #sent < device.command.parameters and
      not is_command(sent)
  device.got = nil
  if is_piece or (is_prefix and device.expected ~= "parameters") then
    device.sent = sent
    return add(items, "part", transfer)
  end
  device.sent, transfer.bytes = nil, sent
  take_write(device, transfer, items, frame)
  if packet.has_failed then device.expected = "nothing" end
end

local function follow_packet(device, packet, is_from_scanner, items, frame)
  if packet.is_transfer then
    follow_transfer(device, packet, is_from_scanner, items, frame)
  elseif is_from_scanner then
    follow_bus_read(device, packet, items)
  else
    follow_bus_write(device, packet, items, frame)
  end
end

---------------------------------------------------------------------------------------------------
-- Showing the items

local function names_set(row, value)
  local set = {}
  for _, name in ipairs(row.names) do
    if has_bit(value, name[1]) then set[#set + 1] = name[2] end
  end
  return table.concat(set, ", ")
end

local function show_flags(tree, row, range, value, tells_trouble)
  local item = tree:add_le(row.field, range)
  for i, name in ipairs(row.names) do
    item:add_le(row.bits[i], range)
    if tells_trouble and name.trouble and has_bit(value, name[1]) then
      item:add_proto_expert_info(e.trouble, capitalised(row.name) .. ": " .. name[2])
    end
  end
  if value > 0 then item:append_text(" (" .. names_set(row, value) .. ")") end
end

local function show_field(tree, row, range, tells_trouble)
  if row.shape == "flags" then
    show_flags(tree, row, range, range:le_uint(), tells_trouble)
  elseif row.shape == "text" then
    tree:add(row.field, range, (range:string():gsub("[%z ]+$", "")))
  elseif row.shape == "position" and range:uint() ~= 0xFF then
    tree:add_le(row.field, range):append_text(" (position " .. range:uint() - 0x40 .. ")")
  else
    tree:add_le(row.field, range)
  end
end

-- Shows the fields of `rows` that lie in the range, and returns which of its bytes they are.
local function show_fields(tree, rows, range, tells_trouble)
  local shown = {}
  for _, row in ipairs(rows) do
    if row.offset + row.width <= range:len() then
      show_field(tree, row, range(row.offset, row.width), tells_trouble)
      for i = row.offset, row.offset + row.width - 1 do shown[i] = true end
    end
  end
  return shown
end

local function show_level_data(tree, range)
  local length = math.min(range:len(), MOST_REPLY_BYTES)
  if length < 10 then return tree:add_proto_expert_info(e.resolution) end
  local count = math.floor((length - 7) / 3)
  tree:add(f.level, range(0, 2))
  for i = 0, count - 1 do tree:add_le(f.resolution, range(3 + 3 * i, 2)) end
  tree:add_le(f.width, range(3 + 3 * count, 2))
  tree:add_le(f.height, range(5 + 3 * count, 2))
end

local SUMMARY_FIELDS = {
  set_parameters = {"main resolution", "area width", "area height", "bits per sample"},
  scan_area = {"left", "top", "width", "height"},
}

local function summary_value(row, bytes)
  local value = number_at(bytes, row.offset, row.width)
  if row.shape == "choice" then return names_by_value(row)[value] or tostring(value) end
  if row.shape == "signed" and value > 127 then value = value - 256 end
  return tostring(value) .. (row.unit and " " .. row.unit or "")
end

local function parameters_summary(command, bytes)
  local wanted = SUMMARY_FIELDS[slug(command.name)]
  local texts = {}
  for _, row in ipairs(command) do
    local is_wanted = wanted == nil
    for _, name in ipairs(wanted or {}) do is_wanted = is_wanted or name == row.name end
    if is_wanted then
      local label = #command > 1 and row.name .. " " or ""
      texts[#texts + 1] = label .. summary_value(row, bytes)
    end
  end
  local values = #texts > 0 and table.concat(texts, ", ") or #bytes .. " bytes"
  return command.title .. ": " .. values
end

local SHOW = {}

function SHOW.command(tree, range, item)
  local shown = tree:add(f.command, range, item.key)
  if item.command ~= nil then return item.command.title end
  shown:add_proto_expert_info(e.unknown)
  return string.format("unknown command 0x%04X", item.key)
end

function SHOW.parameters(tree, range, item)
  local command = item.command
  local block = tree:add(scanner, range, "Parameters of " .. command.title)
  local shown = show_fields(block, command, range, true)
  if command.parameters == TABLE_BYTES then
    block:add(f.gamma_table, range(1))
  elseif command.parameters == MATRIX_BYTES then
    block:add(f.matrix, range)
  else
    for i = 0, range:len() - 1 do
      if not shown[i] and range(i, 1):uint() ~= 0 then
        block:add_proto_expert_info(e.not_zero, "Byte " .. i .. " must be 0")
      end
    end
  end
  return parameters_summary(command, item.bytes)
end

function SHOW.control(tree, range, item)
  local shown = tree:add(f.control, range)
  if item.is_stray then shown:add_proto_expert_info(e.stray) end
  return CONTROL_BYTES[range:uint()]
end

function SHOW.answer(tree, range, item)
  local byte = range(0, 1)  -- what comes with it counts for nothing
  local shown = tree:add(f.answer, byte)
  if item.asked ~= nil then tree:add(f.asked, item.asked):set_generated() end
  local value = byte:uint()
  local text = CONTROL_BYTES[value] or string.format("0x%02X instead of ACK", value)
  if value ~= ACK then shown:add_proto_expert_info(e.refused) end
  if item.command == nil then return text end
  return text .. " to " .. item.command.title
end

local function show_header(block, range)
  block:add(f.start, range(0, 1))
  block:add(f.reply_status, range(1, 1))
  block:add_le(f.count, range(2, 2))
end

-- What a reply comes to in one line: its texts and its flags; of headers the numbers too.
local function reply_summary(item)
  local has_numbers = item.reply == "transfer_header" or item.reply == "block_header"
  local texts = {}
  for _, row in ipairs(REPLIES[item.reply]) do
    local is_here = row.offset + row.width <= #item.bytes
    local value = is_here and row.shape ~= "text" and number_at(item.bytes, row.offset, row.width)
        or 0
    if is_here and row.shape == "text" then
      local text = item.bytes:sub(row.offset + 1, row.offset + row.width)
      texts[#texts + 1] = (text:gsub("[%z ]+$", ""))
    elseif is_here and row.shape == "flags" and value > 0 then
      texts[#texts + 1] = row.name .. " " .. names_set(row, value)
    elseif is_here and has_numbers and row.shape == "number" then
      texts[#texts + 1] = row.name .. " " .. value .. (row.unit and " " .. row.unit or "")
    end
  end
  if item.reply == "level" and #item.bytes > HEADER_BYTES then
    table.insert(texts, 1, item.bytes:sub(5, 6))
  end
  return table.concat(texts, ", ")
end

-- The header of a reply whose data are to come; its fields are shown with them.
function SHOW.header(tree, range, item)
  local what = "header of the reply to " .. item.command.title
  local block = tree:add(scanner, range, capitalised(what))
  if item.asked ~= nil then block:add(f.asked, item.asked):set_generated() end
  show_header(block, range)
  return what
end

local function starts_with_stx(reply)
  return REPLIES[reply].declares_data or reply == "condition" or reply:find("header") ~= nil
end

function SHOW.reply(tree, range, item)
  local what = item.block and "header of block " .. item.block
      or "reply to " .. item.command.title
  local block = tree:add(scanner, range, capitalised(what))
  if item.asked ~= nil then block:add(f.asked, item.asked):set_generated() end
  local has_header = REPLIES[item.reply].declares_data or item.reply == "condition"
  if has_header and not item.has_data and #item.bytes >= HEADER_BYTES then
    show_header(block, range)
  end
  if #item.bytes > 0 then
    show_fields(block, REPLIES[item.reply], range, item.block == nil)
    local is_spoiled = starts_with_stx(item.reply) and byte_at(item.bytes, 0) ~= STX
    if is_spoiled then block:add_proto_expert_info(e.spoiled) end
  end
  if item.reply == "level" and #item.bytes > HEADER_BYTES then
    show_level_data(block, range(HEADER_BYTES))
  end
  if item.is_bad then block:add_proto_expert_info(e.header) end
  local summary = reply_summary(item)
  return what .. (summary ~= "" and ": " .. summary or "")
end

local function status_text(item)
  if not item.is_whole then return "goes on" end
  if item.status == nil then return "status not kept" end
  if has_bit(item.status, ERROR_BIT) then return "status error" end
  return has_bit(item.status, LAST_BIT) and "status ok, last block" or "status ok"
end

local function block_text(item)
  local of = item.blocks > 0 and " of " .. item.blocks or ""
  local lines = item.lines > 0 and string.format(", %d line%s", item.lines,
                                                 item.lines == 1 and "" or "s") or ""
  return string.format("block %d%s%s, %d bytes, %s", item.number, of, lines, item.data_bytes,
                       status_text(item))
end

function SHOW.block(tree, range, item)
  local text = block_text(item)
  local block = tree:add(scanner, range, "Image data, " .. text)
  block:add(f.block_number, item.number)
  if item.blocks > 0 then block:add(f.block_count, item.blocks) end
  if item.lines > 0 then block:add(f.block_lines, item.lines) end
  block:add(f.block_bytes, item.data_bytes)
  if item.asked ~= nil then block:add(f.asked, item.asked):set_generated() end
  local data_bytes = item.length - (item.has_status_byte and 1 or 0)
  if data_bytes > 0 then block:add(f.block_data, range(0, data_bytes)) end
  if item.is_cut then block:add_proto_expert_info(e.cut) end
  if item.is_whole and item.data_bytes ~= item.announced then
    block:add_proto_expert_info(e.length)
  end
  if item.status ~= nil and item.is_whole then
    local status = item.has_status_byte and block:add(f.block_status, range(data_bytes, 1))
        or block:add(f.block_status, item.status)
    if has_bit(item.status, ERROR_BIT) then status:add_proto_expert_info(e.trouble) end
  end
  return text
end

function SHOW.part(tree, range)
  tree:add(f.part, range)
  return "first part"
end

-- Of an answer, a reply or a block.
function SHOW.nothing(tree, range, item)
  if item.length > 0 then return SHOW.part(tree, range) end
  if not item.is_cut then return "nothing came" end
  tree:add_proto_expert_info(e.cut)
  return "reply not kept"
end

function SHOW.stray(tree, range, item)
  local shown = item.length > 0 and tree:add(f.unexpected, range) or tree
  shown:add_proto_expert_info(e.stray)
  return item.count .. " unexpected byte" .. (item.count == 1 and "" or "s")
end

-- A message that came in several packets is shown whole in the last of them.
local function range_of(tvb, item)
  if item.bytes ~= nil and #item.bytes > item.length then
    return ByteArray.new(item.bytes, true):tvb("Reassembled message")()
  end
  if item.length <= 0 then return tvb() end
  return tvb(item.offset, item.length)
end

local function show(items, tvb, pinfo, tree)
  local branch = tree:add(scanner, tvb())
  local texts = {}
  for _, item in ipairs(items) do
    texts[#texts + 1] = SHOW[item.kind](branch, range_of(tvb, item), item)
  end
  local info = table.concat(texts, "; ")
  branch:append_text(": " .. info)
  if items.has_failed then
    branch:add_proto_expert_info(e.failed)
    info = info .. " (the transfer failed)"
  elseif items.is_short then
    branch:add_proto_expert_info(e.short)
    info = info .. " (cut short)"
  end
  pinfo.cols.protocol = "PMDDB832"
  pinfo.cols.info = info
end

---------------------------------------------------------------------------------------------------
-- Which packets are a scanner's

local function has_failed()
  for _, usb_result in ipairs(usb_results) do
    local result = usb_result()
    if result ~= nil and result.value ~= 0 and result.value ~= IN_PROGRESS then return true end
  end
  return false
end

-- A converted file says in comments what the packets do not hold: that calls lie between two
-- transfers, what the host asked for where less came, and the last byte of data that were not kept.
local function read_comments(packet)
  for _, comment in ipairs({packet_comment()}) do
    for line in tostring(comment.value):gmatch("[^\r\n]+") do
      local is_call = line:find("^host calls ") ~= nil or line:find("^%w+ returns") ~= nil
      packet.is_first_of_call = packet.is_first_of_call or is_call
      packet.is_short = packet.is_short or line:find("^the host asked for ") ~= nil
      packet.last_byte = packet.last_byte or tonumber(line:match("last byte (0x%x+)") or "")
    end
  end
end

local function is_converted()
  local name = interface_name()
  return name ~= nil and name.value == CONVERTED
end

local function follow(device, bytes, reported, is_from_scanner, frame)
  local packet = {bytes = bytes, reported = reported, has_failed = has_failed(),
                  is_transfer = is_converted()}
  read_comments(packet)
  local items = {has_failed = packet.has_failed, is_short = packet.is_short}
  follow_packet(device, packet, is_from_scanner, items, frame)
  packets[frame] = items
  return items
end

-- The device that sent or got the packet, once it is known for a scanner: by its address, or by a
-- whole command in a packet of its own.
local function find_device(tvb, is_from_scanner)
  local bus, address = usb_bus(), usb_device()
  if bus == nil or address == nil then return nil end
  local key = bus.value .. "." .. address.value
  local wanted = scanner.prefs.device
  if wanted ~= 0 and wanted ~= address.value then return nil end
  if devices[key] == nil then
    local is_scanner = wanted ~= 0 or (not is_from_scanner and is_command(tvb:raw()))
    if is_scanner then devices[key] = new_device() end
  end
  return devices[key]
end

local function dissect(tvb, pinfo, tree)
  local direction = usb_direction()
  if direction == nil then return false end
  local is_from_scanner = direction.value == 1
  if packets[pinfo.number] == nil then
    local device = find_device(tvb, is_from_scanner)
    if device == nil then return false end
    follow(device, tvb:raw(), tvb:reported_len(), is_from_scanner, pinfo.number)
  end
  show(packets[pinfo.number], tvb, pinfo, tree)
  return true
end

-- A packet of a bus without bytes tells something when it failed only: transfers begin and end with
-- such packets.
local function tells_something(length)
  return length > 0 or is_converted() or has_failed()
end

-- A packet of which nothing but its length was kept, or that has none, is not given to a heuristic.
function scanner.dissector(frame_tvb, pinfo, tree)
  local direction, length, kind = usb_direction(), usb_length(), usb_kind()
  if direction == nil or length == nil or kind == nil or kind.value ~= BULK then return end
  local items = packets[pinfo.number]
  local is_without_bytes = length.value == 0 or frame_tvb:len() < frame_tvb:reported_len()
  if items == nil and is_without_bytes and tells_something(length.value) then
    local device = find_device(nil, true)
    if device == nil then return end
    items = follow(device, "", length.value, direction.value == 1, pinfo.number)
    items.is_empty = true
  end
  if items ~= nil and items.is_empty then show(items, frame_tvb, pinfo, tree) end
end

scanner:register_heuristic("usb.bulk", dissect)
register_postdissector(scanner)
