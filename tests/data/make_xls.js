// Writes the BIFF workbooks the spreadsheet tests read. No library on the build machine writes
// ".xls", so these are made once with SheetJS and committed:
//   cd /tmp/x && npm install xlsx@0.18.5 && NODE_PATH=/tmp/x/node_modules node make_xls.js
const XLSX = require('xlsx');
const path = require('path');
const out = (name) => path.join(__dirname, name);

// The sheet that the tests also write as ".xlsx" (keep the two in step): names with blanks,
// numbers whole and decimal, a missing cell inside column D, a date and a boolean. (libfreexl
// refuses cells holding an empty string, so D2 is left out rather than written empty.)
function sharedSheet() {
  const rows = [
    ['bolt.prt', 3, 2.5, 'first'],
    ['  nut.prt ', 12, 0.125],
    ['washer.prt', 'M8', 100, 'third'],
    ['ünïcode & <tags>', -4, 1e-7, 'x'],
  ];
  const ws = XLSX.utils.aoa_to_sheet(rows);
  ws['E1'] = { t: 'n', v: 45000, z: 'yyyy-mm-dd' };
  ws['F1'] = { t: 'b', v: true };
  ws['!ref'] = 'A1:F4';
  return ws;
}

function write(name, sheets, activeTab) {
  const wb = XLSX.utils.book_new();
  for (const [title, ws] of sheets) XLSX.utils.book_append_sheet(wb, ws, title);
  wb.Workbook = wb.Workbook || {};
  wb.Workbook.Views = [{ activeTab: activeTab || 0 }];
  XLSX.writeFile(wb, out(name), { bookType: 'biff8' });
  if (activeTab) selectTab(out(name), activeTab);
}

// SheetJS leaves the selected tab of the BIFF window record (WINDOW1, itabCur) at 0: set it.
function selectTab(file, tab) {
  const CFB = require('cfb');
  const doc = CFB.read(file, { type: 'file' });
  const entry = CFB.find(doc, 'Workbook');
  const data = Buffer.from(entry.content);
  for (let at = 0; at + 4 <= data.length;) {
    const type = data.readUInt16LE(at), length = data.readUInt16LE(at + 2);
    if (type === 0x000A) break;
    if (type === 0x003D) data.writeUInt16LE(tab, at + 4 + 10);
    at += 4 + length;
  }
  entry.content = data;
  CFB.writeFile(doc, file);
}

// Small: the workbook stream stays under 4096 bytes and lives in the compound file's mini stream.
write('shared_small.xls', [['Parts', sharedSheet()]]);

// Large enough for a regular stream: the shared sheet on top of 400 filler rows in column G.
const big = sharedSheet();
for (let r = 1; r <= 400; ++r) big['G' + r] = { t: 's', v: 'filler row ' + r };
big['!ref'] = 'A1:G400';
write('shared_large.xls', [['Parts', big]]);

// Two sheets, the second one active.
write('second_active.xls', [
  ['One', XLSX.utils.aoa_to_sheet([['first sheet']])],
  ['Two', XLSX.utils.aoa_to_sheet([['second sheet'], ['row 2']])],
], 1);

// A fastener clearance sheet in the extended layout: heading row, three fastener names, one of
// them without Max values (cells left out, not written empty, for libfreexl).
const clearance = XLSX.utils.aoa_to_sheet([
  ['F', 'A', 'A1', 'B', 'B1'],
  ['ISO 4017 M8', 1, 2, 3, 4],
  ['iso 4762 m6', 0.5, 1.5, 0.7, 1.25],
]);
clearance['A4'] = { t: 's', v: 'ACME 10' };
clearance['B4'] = { t: 'n', v: 2 };
clearance['D4'] = { t: 'n', v: 1 };
clearance['!ref'] = 'A1:E4';
write('fastener_clearance.xls', [['Clearances', clearance]]);
