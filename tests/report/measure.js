// Measures the report in each frame: nothing wider than the page or than its place, every text legible, nothing fetched or run.
addEventListener('load', () => {
  const lines = ['measured ' + [...document.querySelectorAll('iframe')].map(frame => frame.width).join(' ') + ' ' +
                 (matchMedia('(prefers-color-scheme: dark)').matches ? 'dark' : 'light')];
  const numbers = colour => colour.match(/[\d.]+/g).map(Number);
  const luminance = colour => {
    const [red, green, blue] = numbers(colour).slice(0, 3).map(value => {
      const share = value / 255;
      return share <= 0.03928 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
    });
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
  };
  const contrast = (one, other) => {
    const [low, high] = [luminance(one), luminance(other)].sort((a, b) => a - b);
    return (high + 0.05) / (low + 0.05);
  };

  for (const frame of document.querySelectorAll('iframe')) {
    const page = frame.contentDocument, view = frame.contentWindow, width = Number(frame.width);
    const fault = (what, element) => lines.push('fault ' + width + ': ' + what +
      (element ? ': <' + element.tagName + ' ' + element.className + '> ' + element.textContent.slice(0, 60) : ''));
    const ground = element => {
      for (let at = element; at; at = at.parentElement) {
        const colour = view.getComputedStyle(at).backgroundColor;
        if (numbers(colour)[3] !== 0) {
          return colour;
        }
      }
      return 'rgb(255, 255, 255)';
    };
    page.querySelectorAll('details').forEach(part => { part.open = true; });
    if (view.innerWidth !== width) {
      fault('is ' + view.innerWidth + ' wide');
    }
    if (page.documentElement.scrollWidth > width) {
      fault('scrolls to the side: ' + page.documentElement.scrollWidth);
    }
    if (page.querySelectorAll('tbody tr').length < 300) {
      fault('has few rows');
    }
    if (page.scripts.length > 0 || view.performance.getEntriesByType('resource').length > 0) {
      fault('runs or fetches something');
    }
    for (const element of page.body.querySelectorAll('*')) {
      const box = element.getBoundingClientRect();
      if (box.right > width + 0.5 || box.left < -0.5) {
        fault('sticks out', element);
      }
      if (element.clientWidth > 0 && element.scrollWidth > element.clientWidth + 1) {
        fault('is wider than its place', element);
      }
      const hasText = [...element.childNodes].some(node => node.nodeType === 3 && node.data.trim() !== '');
      if (hasText && contrast(view.getComputedStyle(element).color, ground(element)) < 4.5) {
        fault('is hard to read', element);
      }
    }
  }
  document.querySelector('pre').textContent = lines.slice(0, 20).join('\n') + '\nend';
});
