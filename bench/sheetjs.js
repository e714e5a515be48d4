// SheetJS side of bench/compare_sheetjs.sh (needs xlsx@0.18.5 on NODE_PATH).
//   node sheetjs.js read FILE          reads the first sheet as the comparison does; prints JSON
//   node sheetjs.js write-xls FILE N   writes an N-row, 6-column BIFF workbook
const XLSX = require('xlsx');
const fs = require('fs');
const [mode, file, count] = process.argv.slice(2);

if (mode === 'read') {
  const start = process.hrtime.bigint();
  const workbook = XLSX.readFile(file);
  const rows = XLSX.utils.sheet_to_json(workbook.Sheets[workbook.SheetNames[0]], { header: 1 });
  const seconds = Number(process.hrtime.bigint() - start) / 1e9;
  const peakKiB = Number(/VmHWM:\s+(\d+)/.exec(fs.readFileSync('/proc/self/status', 'utf8'))[1]);
  console.log(JSON.stringify({ rows: rows.length, seconds, peakKiB }));
} else if (mode === 'write-xls') {
  // The same mix of columns as the ".xlsx" that sheet_bench writes. No cell holds an empty
  // string: libfreexl refuses those.
  const rows = [];
  for (let r = 0; r < Number(count); ++r)
    rows.push(['part-' + String(r).padStart(6, '0') + '.prt', r, r * 0.25, 'M' + (3 + (r % 20)),
               r % 2 ? 'steel' : 'aluminium', 1 / (r + 1)]);
  const workbook = XLSX.utils.book_new();
  XLSX.utils.book_append_sheet(workbook, XLSX.utils.aoa_to_sheet(rows), 'Parts');
  XLSX.writeFile(workbook, file, { bookType: 'biff8' });
} else {
  console.error('usage: sheetjs.js read FILE | write-xls FILE ROWS');
  process.exit(2);
}
